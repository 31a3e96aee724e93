#include "base/Error.h"
#include "base/Failures.h"
#include "plugins/modServerHelper.h"
#include "settings/CRegistry.h"
#include "shell/frmMain.h"
#include "shell/modCommon.h"
#include "ui/MessageBox.h"
#include "ui/Toolkit.h"

namespace {

// The submenu of profiles: the pattern entry, which the user never sees, "Clear All", a separator, then the
// profiles.
constexpr std::int32_t kPattern = 0;
constexpr std::int32_t kClearAll = 1;
constexpr std::int32_t kSeparator = 2;
constexpr std::int32_t kFirstProfile = 3;

/// Removes all entries but the pattern, which shows meanwhile: a submenu keeps one visible entry.
void KeepPatternOnly(ui::MenuArray& entries) {
  entries[kPattern].Visible(true);
  while (entries.UpperBound() > kPattern) entries.Unload(entries.UpperBound());
}

ui::Menu& AddEntry(ui::MenuArray& entries, std::int32_t iIndex, std::string sCaption) {
  ui::Menu& entry = entries.Load(iIndex);
  entry.Caption(std::move(sCaption));
  entry.Visible(true);
  return entry;
}

}  // namespace

void frmMain::ShowTrayMenu() {
  // A failure is shown once in a run, and the menu opens after its box: the user needs it most of all when a
  // plug-in misbehaves.
  ui::EventGuard::Run(*this, "ShowTrayMenu", ui::EventGuard::Repeats::kYes, [this] {
    base::Failures failures;
    std::string sAddress = "N/A";
    failures.Run([&] { sAddress = modServerHelper::WANIP(g_Registry->Router); });
    mnuCopyIP.Caption("&Copy IP (" + sAddress + ") to Clipboard");
    failures.Run([this] { PopulateTrayMenu(); });
    failures.Rethrow();
  });
  mnuPopUp.ShowAsPopup();
}

void frmMain::PopulateTrayMenu() {
  base::Failures failures;
  PopulateProfileEntries();
  m_bHasFeatures = false;
  failures.Run([this] { PopulateFeatureEntries(); });
  mnuFeatures.Visible(m_bHasFeatures);
  SetProfileMenuVisibility();
  failures.Rethrow();
}

void frmMain::PopulateProfileEntries() {
  KeepPatternOnly(mnuProfiles);
  m_sProfileKeys.assign(g_Registry->ccMapProfiles().Count() + kFirstProfile, std::string());
  AddEntry(mnuProfiles, kClearAll, "Clear All");
  AddEntry(mnuProfiles, kSeparator, "-");
  std::int32_t iIndex = kFirstProfile;
  for (const auto& profile : g_Registry->ccMapProfiles()) {
    AddEntry(mnuProfiles, iIndex, profile->sName).Checked(profile->bEnabled);
    m_sProfileKeys[static_cast<std::size_t>(iIndex)] = profile->sKey();
    ++iIndex;
  }
  mnuProfiles[kPattern].Visible(false);
}

void frmMain::PopulateFeatureEntries() {
  std::vector<std::string> sNames;
  std::vector<std::int16_t> iIdentifiers;
  if (!modServerHelper::GetFeatures(g_Registry->Router, sNames, iIdentifiers)) return;
  if (sNames.size() < iIdentifiers.size()) {
    throw base::Error(base::ErrorNumber::kSubscript,
                      "The router's plug-in gives fewer names of features than identifiers");
  }
  m_bHasFeatures = true;
  KeepPatternOnly(mnuSubFeatures);
  m_iFeatureIDs.assign(1, 0);
  for (std::size_t i = 0; i < iIdentifiers.size(); ++i) {
    const auto iIndex = static_cast<std::int32_t>(i + 1);
    AddEntry(mnuSubFeatures, iIndex, sNames[i]);
    m_iFeatureIDs.push_back(iIdentifiers[i]);
  }
  mnuSubFeatures[kPattern].Visible(false);
}

void frmMain::SetProfileMenuVisibility() {
  const bool bShow = !g_Registry->ccMapProfiles().IsEmpty() && g_Registry->RouterValid();
  mnuPortForwarding.Visible(bShow);
  mnuPortFeaturesSeperator.Visible(bShow || m_bHasFeatures);
}

void frmMain::mnuCopyIP_Click() {
  ui::TheInterface().clipboard->Clear();
  ui::TheInterface().clipboard->SetText(modServerHelper::WANIP(g_Registry->Router));
}

void frmMain::mnuClearDMZ_Click() {
  modServerHelper::SetDMZ(g_Registry->Router, 0);
}

void frmMain::mnuSetDMZ_Click() {
  modServerHelper::SetDMZ(g_Registry->Router, modCommon::GetLastOctet(winSock.LocalIP()));
}

void frmMain::mnuProfiles_Click(std::int32_t iIndex) {
  if (m_sProfileKeys.size() <= kSeparator) return;
  if (iIndex == kClearAll) {
    for (std::int32_t i = kFirstProfile; i <= mnuProfiles.UpperBound(); ++i) mnuProfiles[i].Checked(false);
    for (const auto& profile : g_Registry->ccMapProfiles()) profile->bClear = true;
  } else {
    const auto profile = g_Registry->GetMapProfileByKey(m_sProfileKeys.at(static_cast<std::size_t>(iIndex)));
    if (g_Registry->AutomaticActivation && profile->bAutoActivate) {
      ui::ShowMessage("\"" + profile->sName +
                          "\" can not be enabled/disabled manually.\r\n"
                          "Disable Auto Activate for this profile if you want manual control.",
                      ui::MessageIcon::kWarning);
      return;
    }
    profile->bClear = profile->bEnabled;
    profile->bSet = !profile->bEnabled;
    mnuProfiles[iIndex].Checked(profile->bSet);
  }
  ActivateProfiles(false);
}

void frmMain::mnuSubFeatures_Click(std::int32_t iIndex) {
  modServerHelper::ActivateFeaure(g_Registry->Router, winSock.LocalIP(),
                                  m_iFeatureIDs.at(static_cast<std::size_t>(iIndex)));
}
