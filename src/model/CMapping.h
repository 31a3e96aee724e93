#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "base/Event.h"
#include "base/TextFile.h"
#include "base/Variant.h"
#include "model/CXML.h"
#include "model/PortRanges.h"
#include "plugins/PortMappingData.h"

/// One port-forwarding rule: a range of ports, the protocols, and the computer that receives the traffic.
/// Nothing limits a port or orders the two ends of the range here.
class CMapping {
 public:
  CMapping();
  CMapping(const CMapping&) = delete;
  CMapping& operator=(const CMapping&) = delete;

  const std::string& sDescription() const { return m_Data.sDescription; }
  void sDescription(std::string sDescription) { m_Data.sDescription = std::move(sDescription); }
  std::int32_t lBeginPort() const { return m_Data.lBeginPort; }
  void lBeginPort(std::int32_t lBeginPort) {
    m_Data.lBeginPort = lBeginPort;
    PortRanges::Changed();
  }
  std::int32_t lEndPort() const { return m_Data.lEndPort; }
  void lEndPort(std::int32_t lEndPort) {
    m_Data.lEndPort = lEndPort;
    PortRanges::Changed();
  }
  /// 0 TCP, 1 UDP, 2 both. With neither it reads as 0; any other code that is written changes nothing.
  std::int32_t Protocal() const;
  void Protocal(std::int32_t lProtocal);
  /// Last octet of the target host, -1 for this computer.
  std::int16_t iForwardIPAddress() const { return m_Data.iForwardIPAddress; }
  void iForwardIPAddress(std::int16_t iForwardIPAddress) { m_Data.iForwardIPAddress = iForwardIPAddress; }
  /// Unlike that of any other mapping or profile of this run.
  const std::string& sKey() const { return m_sKey; }
  /// "TCP", "UDP", "TCP+UDP", or empty with neither.
  std::string_view sType() const;
  std::string_view sXMLTag() const { return "Mapping"; }

  void Save(std::string_view sAppName, std::string_view sSection, std::string_view sKeyPrefix) const;
  /// Fails when a stored number is none; the text tells which.
  void Load(std::string_view sAppName, std::string_view sSection, std::string_view sKeyPrefix);

  void WriteXML(base::TextFileWriter& file) const;
  /// False when `sLine` is no header of a mapping. Otherwise the values are taken from it, and one more line
  /// is read as the trailer; ErrorOccured tells when it isn't there.
  bool ReadXML(base::TextFileReader& file, std::string_view sLine);
  void m_XML_GetValue(std::string_view sAttributeName, base::Variant& vValue);
  void m_XML_SetValue(std::string_view sAttributeName, const base::Variant& vValue);
  void m_XML_ErrorOccured(const std::string& sErrorMessage);

  /// The same values under a key of its own.
  std::shared_ptr<CMapping> Duplicate() const;

  base::Event<const std::string&> ErrorOccured;

 private:
  CXML m_XML;
  PortMappingData m_Data;
  std::string m_sKey;
};
