#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "base/Event.h"
#include "base/KeyedCollection.h"
#include "base/TextFile.h"
#include "base/Variant.h"
#include "model/CMapping.h"
#include "model/CXML.h"

/// A named set of mappings that is switched on and off as one, and the program that may do so by running.
class CMapProfile {
 public:
  /// In the order in which the mappings were added, by their sKey.
  using Mappings = base::KeyedCollection<std::shared_ptr<CMapping>>;

  CMapProfile();
  ~CMapProfile();
  CMapProfile(const CMapProfile&) = delete;
  CMapProfile& operator=(const CMapProfile&) = delete;

  std::string sName;
  std::string sDescription;
  /// The window by which the program is recognised.
  std::string sWindowTitle;
  std::string sWindowClass;
  bool bAutoActivate = false;
  /// The mappings are on the router at present.
  bool bEnabled = false;
  /// What the next activation run is to do with the mappings; neither is stored.
  bool bClear = false;
  bool bSet = false;

  /// Unlike that of any other mapping or profile of this run.
  const std::string& sKey() const { return m_sKey; }
  const Mappings& ccMappings() const { return m_ccMappings; }
  /// Not the tag of the exchange file, which is "MapProfile".
  std::string_view sXMLTag() const { return "Profile"; }

  /// A stored count of mappings is a 16-bit number: a profile with more would not be loaded again.
  static constexpr std::int32_t kMostMappings = 32767;
  bool CanBeStored() const { return m_ccMappings.Count() <= static_cast<std::size_t>(kMostMappings); }

  /// At the end.
  void AddMapping(std::shared_ptr<CMapping> Mapping);
  /// Both fail for an unknown key.
  void RemoveMapping(std::string_view sMappingKey);
  std::shared_ptr<CMapping> GetMapping(std::string_view sMappingKey) const;

  void Save(std::string_view sAppName, std::string_view sSection, std::string_view sKeyPrefix) const;
  /// For a fresh object: the mappings are added to those that it has. Fails when a stored value can't be
  /// converted; the text tells which.
  void Load(std::string_view sAppName, std::string_view sSection, std::string_view sKeyPrefix);

  void WriteXML(base::TextFileWriter& file) const;
  /// False when `sLine` is no header of a profile. Otherwise the profile is read up to its trailer or the end
  /// of the file; lines that are no mapping are skipped.
  bool ReadXML(base::TextFileReader& file, std::string_view sLine);
  void m_XML_GetValue(std::string_view sAttributeName, base::Variant& vValue);
  void m_XML_SetValue(std::string_view sAttributeName, const base::Variant& vValue);
  void m_XML_ErrorOccured(const std::string& sErrorMessage);
  void m_TempMappings_ErrorOccured(const std::string& sErrorMessage);

  /// The same values and marks and a copy of each mapping, all under keys of their own.
  std::shared_ptr<CMapProfile> Duplicate() const;
  /// The mappings live on with whoever holds them.
  void ClearMappings();

  base::Event<const std::string&> ErrorOccured;

 private:
  /// Puts another mapping, or none, in the place of the one that is being read.
  void TempMapping(std::shared_ptr<CMapping> Mapping);

  std::string m_sKey;
  Mappings m_ccMappings;
  CXML m_XML;
  std::shared_ptr<CMapping> m_TempMappings;
};
