// The members of CRegistry that keep the profiles sorted and their names distinct, and list them.

#include <limits>

#include "base/Conversions.h"
#include "base/Error.h"
#include "editing/modListViewHelper.h"
#include "settings/CRegistry.h"
#include "shell/modCommon.h"
#include "ui/ListView.h"

void CRegistry::AddMapProfile(const std::shared_ptr<CMapProfile>& MapProfile, ui::ListView* lv) {
  if (m_MapProfileNames.Contains(MapProfile->sName)) MapProfile->sName = NumberedName(MapProfile->sName);
  const std::string* const before = m_MapProfileNames.KeyAfter(MapProfile->sName);
  if (before) {
    m_ccMapProfiles.AddBefore(MapProfile, MapProfile->sKey(), *before);
  } else {
    m_ccMapProfiles.Add(MapProfile, MapProfile->sKey());
  }
  PortRanges::Changed();
  m_MapProfileNames.Add(MapProfile->sName, MapProfile->sKey());
  if (!lv) return;
  AddMapProfileListItem(*lv, *MapProfile, false);
  modListViewHelper::AutoSizeListViewColumns(*lv, true);
}

std::string CRegistry::NumberedName(const std::string& sName) const {
  const std::string stem = sName + "(";
  // The last name in the order of the collection counts, which need not be the one with the greatest number.
  // A number that leaves no room for the next one doesn't count.
  const auto [first, last] = m_MapProfileNames.WithPrefix(stem);
  std::int32_t number = 1;
  for (auto name = last; name != first;) {
    --name;
    const double next = base::LeadingNumber(std::string_view(name->first).substr(stem.size())) + 1;
    if (next > std::numeric_limits<std::int32_t>::max() || next < std::numeric_limits<std::int32_t>::min())
      continue;
    number = base::ToInt32(next);
    break;
  }
  return stem + base::ToText(number) + ")";
}

void CRegistry::RemoveMapProfile(std::string_view sKey, ui::ListView* lv) {
  m_MapProfileNames.Remove(sKey);
  try {
    m_ccMapProfiles.Remove(sKey);
    PortRanges::Changed();
  } catch (const base::Error&) {
    // The row goes in any case.
  }
  if (!lv) return;
  try {
    lv->Remove(sKey);
  } catch (const base::Error&) {
    // A list that shows only some of the profiles need not have a row for this one.
  }
}

std::shared_ptr<CMapProfile> CRegistry::GetMapProfileByKey(std::string_view sKey) const {
  return m_ccMapProfiles.Get(sKey);
}

void CRegistry::PopulateMapProfileListView(ui::ListView& lv, bool bAutoOnly) const {
  lv.ClearRows();
  const CMapProfile* smallest = nullptr;
  for (const auto& profile : m_ccMapProfiles) {
    if (bAutoOnly && !profile->bAutoActivate) continue;
    AddMapProfileListItem(lv, *profile, bAutoOnly);
    if (!smallest || profile->sName < smallest->sName) smallest = profile.get();
  }
  if (smallest) lv.Select(*lv.Find(smallest->sKey()));
  modListViewHelper::AutoSizeListViewColumns(lv, true);
}

void CRegistry::AddMapProfileListItem(ui::ListView& lv, const CMapProfile& MapProfile,
                                      bool bShowActive) const {
  const bool isMarked = bShowActive && MapProfile.bEnabled;
  const std::string sText = MapProfile.sName + (isMarked ? " (Active)" : "");
  const std::size_t row = lv.AddRow(MapProfile.sKey(), sText);
  lv.AddSubItem(row, "Name", sText);
  lv.Select(row);
  lv.EnsureVisible(row);
  if (isMarked) lv.CellColor(row, 0, modCommon::ColorDarkRed());
}
