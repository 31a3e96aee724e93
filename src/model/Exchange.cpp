// The members of CRegistry that write and read exchange files.

#include <optional>
#include <utility>

#include "base/Conversions.h"
#include "base/Error.h"
#include "base/TextFile.h"
#include "platform/ReplacedTextFile.h"
#include "settings/CRegistry.h"
#include "ui/MessageBox.h"

namespace {

/// Opens the file; tells the user when that fails.
template <typename File>
bool Open(std::optional<File>& file, const std::string& sFullPathName) {
  try {
    file.emplace(sFullPathName);
    return true;
  } catch (const base::Error&) {
    ui::ShowMessage("Unable to open file " + sFullPathName, ui::MessageIcon::kWarning);
    return false;
  }
}

std::string TooManyMappings(const CMapProfile& profile) {
  return "The profile \"" + profile.sName + "\" has " +
         base::ToText(static_cast<std::int32_t>(profile.ccMappings().Count())) +
         " mappings. A profile can have " + base::ToText(CMapProfile::kMostMappings) +
         " at most, so it was not imported.";
}

}  // namespace

void CRegistry::ExportByKeys(const std::string& sFullPathName, std::span<const std::string> sProfileKeys) {
  sTransferMessage = "Export Complete Successfully";
  std::optional<platform::ReplacedTextFile> file;
  if (!Open(file, sFullPathName)) return;
  // The keys mostly come in the order of the list, so the next one is looked for behind the one before.
  auto place = m_ccMapProfiles.begin();
  for (const std::string& sKey : sProfileKeys) {
    if (place == m_ccMapProfiles.end() || (*place)->sKey() != sKey) place = m_ccMapProfiles.PlaceOf(sKey);
    (*place++)->WriteXML(file->Writer());
  }
  file->Close();
  ui::ShowMessage(sTransferMessage, ui::MessageIcon::kInformation);
}

void CRegistry::Import(const std::string& sFullPathName) {
  sTransferMessage = "Import Complete Successfully";
  TemporaryProfile(std::make_shared<CMapProfile>());
  std::optional<base::TextFileReader> file;
  if (!Open(file, sFullPathName)) return;
  while (!file->AtEnd()) {
    if (!m_TemporaryProfile->ReadXML(*file, file->ReadLine())) continue;
    if (m_TemporaryProfile->CanBeStored()) {
      AddMapProfile(m_TemporaryProfile, nullptr);
    } else {
      m_TemporaryProfile_ErrorOccured(TooManyMappings(*m_TemporaryProfile));
    }
    TemporaryProfile(std::make_shared<CMapProfile>());
  }
  file.reset();
  TemporaryProfile(nullptr);
  ui::ShowMessage(sTransferMessage, ui::MessageIcon::kInformation);
}

void CRegistry::TemporaryProfile(std::shared_ptr<CMapProfile> MapProfile) {
  if (m_TemporaryProfile) m_TemporaryProfile->ErrorOccured.Disconnect(this);
  m_TemporaryProfile = std::move(MapProfile);
  if (m_TemporaryProfile) {
    m_TemporaryProfile->ErrorOccured.Connect<&CRegistry::m_TemporaryProfile_ErrorOccured>(this);
  }
}

void CRegistry::m_TemporaryProfile_ErrorOccured(const std::string& sErrorMessage) {
  sTransferMessage = sErrorMessage;
}
