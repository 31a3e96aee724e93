#include "model/CMapping.h"

#include "platform/SettingsSection.h"
#include "shell/modCommon.h"

namespace {

constexpr std::string_view kDescription = "Description";
constexpr std::string_view kBeginPort = "BeginPort";
constexpr std::string_view kEndPort = "EndPort";
constexpr std::string_view kProtocal = "Protocal";
constexpr std::string_view kForwardIPAddress = "ForwardIPAddress";

constexpr std::int32_t kProtocalTcp = 0;
constexpr std::int32_t kProtocalUdp = 1;
constexpr std::int32_t kProtocalBoth = 2;
constexpr std::int16_t kThisComputer = -1;

const std::shared_ptr<const CXML::Names>& ElementNames() {
  static const auto names = std::make_shared<const CXML::Names>(
      "Mapping",
      std::vector<std::string>{std::string(kDescription), std::string(kBeginPort), std::string(kEndPort),
                               std::string(kProtocal), std::string(kForwardIPAddress)});
  return names;
}

}  // namespace

CMapping::CMapping() : m_XML(ElementNames()), m_sKey(modCommon::GetUniqueKey("Map_")) {
  m_XML.GetValue.Connect<&CMapping::m_XML_GetValue>(this);
  m_XML.SetValue.Connect<&CMapping::m_XML_SetValue>(this);
  m_XML.ErrorOccured.Connect<&CMapping::m_XML_ErrorOccured>(this);
}

std::int32_t CMapping::Protocal() const {
  if (!m_Data.bUDP) return kProtocalTcp;
  return m_Data.bTCP ? kProtocalBoth : kProtocalUdp;
}

void CMapping::Protocal(std::int32_t lProtocal) {
  if (lProtocal < kProtocalTcp || lProtocal > kProtocalBoth) return;
  m_Data.bTCP = lProtocal != kProtocalUdp;
  m_Data.bUDP = lProtocal != kProtocalTcp;
}

std::string_view CMapping::sType() const {
  if (m_Data.bTCP) return m_Data.bUDP ? "TCP+UDP" : "TCP";
  return m_Data.bUDP ? "UDP" : "";
}

void CMapping::Save(std::string_view sAppName, std::string_view sSection, std::string_view sKeyPrefix) const {
  base::Failures failures;
  const platform::SettingsWriter settings(failures, sAppName, sSection, sKeyPrefix);
  settings.Write(kDescription, sDescription());
  settings.Write(kBeginPort, lBeginPort());
  settings.Write(kEndPort, lEndPort());
  settings.Write(kProtocal, Protocal());
  settings.Write(kForwardIPAddress, iForwardIPAddress());
  failures.Rethrow();
}

void CMapping::Load(std::string_view sAppName, std::string_view sSection, std::string_view sKeyPrefix) {
  const platform::SettingsSection settings(sAppName, sSection, sKeyPrefix);
  sDescription(settings.ReadText(kDescription, ""));
  lBeginPort(settings.ReadInt32(kBeginPort, 0));
  lEndPort(settings.ReadInt32(kEndPort, 0));
  Protocal(settings.ReadInt32(kProtocal, kProtocalBoth));
  iForwardIPAddress(settings.ReadInt16(kForwardIPAddress, kThisComputer));
}

void CMapping::WriteXML(base::TextFileWriter& file) const {
  m_XML.WriteHeader(file);
  m_XML.WriteTrailer(file);
}

bool CMapping::ReadXML(base::TextFileReader& file, std::string_view sLine) {
  if (!m_XML.ReadHeader(sLine)) return false;
  // The end of the file in place of the trailer is a trailer that is missing.
  if (file.AtEnd() || !m_XML.ReadTrailer(file.ReadLine())) {
    ErrorOccured.Raise("Some portions of the file could not be parsed.");
  }
  return true;
}

void CMapping::m_XML_GetValue(std::string_view sAttributeName, base::Variant& vValue) {
  if (sAttributeName == kDescription) {
    vValue = sDescription();
  } else if (sAttributeName == kBeginPort) {
    vValue = lBeginPort();
  } else if (sAttributeName == kEndPort) {
    vValue = lEndPort();
  } else if (sAttributeName == kProtocal) {
    vValue = Protocal();
  } else if (sAttributeName == kForwardIPAddress) {
    vValue = iForwardIPAddress();
  }
}

void CMapping::m_XML_SetValue(std::string_view sAttributeName, const base::Variant& vValue) {
  if (sAttributeName == kDescription) {
    sDescription(base::ToText(vValue));
  } else if (sAttributeName == kBeginPort) {
    lBeginPort(base::ToInt32(vValue));
  } else if (sAttributeName == kEndPort) {
    lEndPort(base::ToInt32(vValue));
  } else if (sAttributeName == kProtocal) {
    Protocal(base::ToInt32(vValue));
  } else if (sAttributeName == kForwardIPAddress) {
    iForwardIPAddress(base::ToInt16(vValue));
  }
}

void CMapping::m_XML_ErrorOccured(const std::string& sErrorMessage) {
  ErrorOccured.Raise(sErrorMessage);
}

std::shared_ptr<CMapping> CMapping::Duplicate() const {
  auto copy = std::make_shared<CMapping>();
  copy->iForwardIPAddress(iForwardIPAddress());
  copy->lBeginPort(lBeginPort());
  copy->lEndPort(lEndPort());
  copy->Protocal(Protocal());
  copy->sDescription(sDescription());
  return copy;
}
