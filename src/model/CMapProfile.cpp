#include "model/CMapProfile.h"

#include <utility>
#include <vector>

#include "base/Conversions.h"
#include "platform/SettingsSection.h"
#include "shell/modCommon.h"

namespace {

constexpr std::string_view kName = "Name";
constexpr std::string_view kDescription = "Description";
constexpr std::string_view kWindowTitle = "WindowTitle";
constexpr std::string_view kWindowClass = "WindowClass";
constexpr std::string_view kAutoActivate = "AutoActivate";
constexpr std::string_view kEnabled = "Enabled";
constexpr std::string_view kMapCount = "MapCount";

const std::shared_ptr<const CXML::Names>& ElementNames() {
  static const auto names = std::make_shared<const CXML::Names>(
      "MapProfile",
      std::vector<std::string>{std::string(kName), std::string(kDescription), std::string(kWindowTitle),
                               std::string(kWindowClass), std::string(kAutoActivate), std::string(kEnabled)});
  return names;
}

std::string MappingPrefix(std::string_view sKeyPrefix, std::int32_t number) {
  return std::string(sKeyPrefix) + "MAP_" + base::ToText(number) + "_";
}

}  // namespace

CMapProfile::CMapProfile() : m_sKey(modCommon::GetUniqueKey("Map_")), m_XML(ElementNames()) {
  m_XML.GetValue.Connect<&CMapProfile::m_XML_GetValue>(this);
  m_XML.SetValue.Connect<&CMapProfile::m_XML_SetValue>(this);
  m_XML.ErrorOccured.Connect<&CMapProfile::m_XML_ErrorOccured>(this);
}

CMapProfile::~CMapProfile() {
  TempMapping(nullptr);
}

void CMapProfile::TempMapping(std::shared_ptr<CMapping> Mapping) {
  if (m_TempMappings) m_TempMappings->ErrorOccured.Disconnect(this);
  m_TempMappings = std::move(Mapping);
  if (m_TempMappings) m_TempMappings->ErrorOccured.Connect<&CMapProfile::m_TempMappings_ErrorOccured>(this);
}

void CMapProfile::AddMapping(std::shared_ptr<CMapping> Mapping) {
  const std::string& key = Mapping->sKey();
  m_ccMappings.Add(std::move(Mapping), key);
  PortRanges::Changed();
}

void CMapProfile::RemoveMapping(std::string_view sMappingKey) {
  m_ccMappings.Remove(sMappingKey);
  PortRanges::Changed();
}

std::shared_ptr<CMapping> CMapProfile::GetMapping(std::string_view sMappingKey) const {
  return m_ccMappings.Get(sMappingKey);
}

void CMapProfile::Save(std::string_view sAppName, std::string_view sSection,
                       std::string_view sKeyPrefix) const {
  base::Failures failures;
  const platform::SettingsWriter settings(failures, sAppName, sSection, sKeyPrefix);
  settings.Write(kDescription, sDescription);
  settings.Write(kName, sName);
  settings.Write(kMapCount, static_cast<std::int32_t>(m_ccMappings.Count()));
  std::int32_t number = 0;
  for (const auto& mapping : m_ccMappings) {
    ++number;
    failures.Run([&] { mapping->Save(sAppName, sSection, MappingPrefix(sKeyPrefix, number)); });
  }
  settings.Write(kWindowTitle, sWindowTitle);
  settings.Write(kWindowClass, sWindowClass);
  settings.Write(kAutoActivate, bAutoActivate);
  settings.Write(kEnabled, bEnabled);
  failures.Rethrow();
}

void CMapProfile::Load(std::string_view sAppName, std::string_view sSection, std::string_view sKeyPrefix) {
  const platform::SettingsSection settings(sAppName, sSection, sKeyPrefix);
  sDescription = settings.ReadText(kDescription, "");
  sName = settings.ReadText(kName, "");
  const std::int16_t count = settings.ReadInt16(kMapCount, 0);
  for (std::int32_t number = 1; number <= count; ++number) {
    auto mapping = std::make_shared<CMapping>();
    mapping->Load(sAppName, sSection, MappingPrefix(sKeyPrefix, number));
    AddMapping(std::move(mapping));
  }
  sWindowTitle = settings.ReadText(kWindowTitle, "");
  sWindowClass = settings.ReadText(kWindowClass, "");
  bAutoActivate = settings.ReadBoolean(kAutoActivate, false);
  bEnabled = settings.ReadBoolean(kEnabled, false);
}

void CMapProfile::WriteXML(base::TextFileWriter& file) const {
  m_XML.WriteHeader(file);
  for (const auto& mapping : m_ccMappings) mapping->WriteXML(file);
  m_XML.WriteTrailer(file);
}

bool CMapProfile::ReadXML(base::TextFileReader& file, std::string_view sLine) {
  if (!m_XML.ReadHeader(sLine)) return false;
  while (!file.AtEnd()) {
    const std::string_view line = file.ReadLine();
    if (m_XML.ReadTrailer(line)) break;
    TempMapping(std::make_shared<CMapping>());
    if (m_TempMappings->ReadXML(file, line)) AddMapping(m_TempMappings);
  }
  TempMapping(nullptr);
  return true;
}

void CMapProfile::m_XML_GetValue(std::string_view sAttributeName, base::Variant& vValue) {
  if (sAttributeName == kName) {
    vValue = sName;
  } else if (sAttributeName == kDescription) {
    vValue = sDescription;
  } else if (sAttributeName == kWindowClass) {
    vValue = sWindowClass;
  } else if (sAttributeName == kWindowTitle) {
    vValue = sWindowTitle;
  } else if (sAttributeName == kAutoActivate) {
    vValue = bAutoActivate;
  } else if (sAttributeName == kEnabled) {
    vValue = bEnabled;
  }
}

void CMapProfile::m_XML_SetValue(std::string_view sAttributeName, const base::Variant& vValue) {
  if (sAttributeName == kName) {
    sName = base::ToText(vValue);
  } else if (sAttributeName == kDescription) {
    sDescription = base::ToText(vValue);
  } else if (sAttributeName == kWindowClass) {
    sWindowClass = base::ToText(vValue);
  } else if (sAttributeName == kWindowTitle) {
    sWindowTitle = base::ToText(vValue);
  } else if (sAttributeName == kAutoActivate) {
    bAutoActivate = base::ToBoolean(vValue);
  } else if (sAttributeName == kEnabled) {
    bEnabled = base::ToBoolean(vValue);
  }
}

void CMapProfile::m_XML_ErrorOccured(const std::string& sErrorMessage) {
  ErrorOccured.Raise(sErrorMessage);
}

void CMapProfile::m_TempMappings_ErrorOccured(const std::string& sErrorMessage) {
  ErrorOccured.Raise(sErrorMessage);
}

std::shared_ptr<CMapProfile> CMapProfile::Duplicate() const {
  auto copy = std::make_shared<CMapProfile>();
  copy->bAutoActivate = bAutoActivate;
  copy->bClear = bClear;
  copy->bEnabled = bEnabled;
  copy->bSet = bSet;
  copy->sDescription = sDescription;
  copy->sName = sName;
  copy->sWindowClass = sWindowClass;
  copy->sWindowTitle = sWindowTitle;
  for (const auto& mapping : m_ccMappings) copy->AddMapping(mapping->Duplicate());
  return copy;
}

void CMapProfile::ClearMappings() {
  m_ccMappings.Clear();
  PortRanges::Changed();
}
