#include "settings/CRegistry.h"

#include <exception>
#include <utility>

#include "base/Conversions.h"
#include "base/Error.h"
#include "platform/Machine.h"
#include "platform/SettingsSection.h"
#include "plugins/modServerHelper.h"
#include "shell/modCommon.h"

std::unique_ptr<CRegistry> g_Registry;

namespace {

std::string FolderOf(const std::string& path) {
  const std::size_t separator = path.find_last_of("\\/");
  return separator == path.npos ? std::string() : path.substr(0, separator);
}

std::string Numbered(std::string_view stem, std::int32_t number) {
  return std::string(stem) + base::ToText(number);
}

std::string ProfilePrefix(std::int32_t number) {
  return Numbered("MP_", number) + "_";
}

}  // namespace

/// Lets the parts of a save run one after the other, whatever happens in them, and keeps what failed first.
class FirstFailure {
 public:
  template <typename Part>
  void Run(Part&& part) {
    try {
      part();
    } catch (const std::exception&) {
      if (!failure_) failure_ = std::current_exception();
    }
  }
  void Rethrow() const {
    if (failure_) std::rethrow_exception(failure_);
  }

 private:
  std::exception_ptr failure_;
};

CRegistry::CRegistry() {
  Load();
}

CRegistry::~CRegistry() {
  try {
    Release();
  } catch (const std::exception& failure) {
    platform::TheMachine().debug->Trace(failure.what());
  }
}

void CRegistry::Release() {
  if (std::exchange(m_bReleased, true)) return;
  FirstFailure failure;
  failure.Run([this] { Save(); });
  Router.reset();
  m_RouterClasses.clear();
  m_ccRouters.Clear();
  m_ccMapProfiles.Clear();
  PortRanges::Changed();
  m_MapProfileNames.Clear();
  failure.Rethrow();
}

void CRegistry::RouterTitle(std::string_view sRouterTitle) {
  Router = GetRouterByTitle(sRouterTitle);
}

void CRegistry::Load() {
  const platform::SettingsSection settings(kApplication, kSection);
  CheckForPlugIns();
  LoadRouters();
  m_InstallPath = FolderOf(platform::TheMachine().process->ExecutablePath());
  modCommon::HelpFile(modCommon::MakeFullPath(m_InstallPath, "Harbourline.hlp"));
  LoadOnStartup = settings.ReadBoolean("LoadOnStartup", true);
  ShowSplashOnStartup = settings.ReadBoolean("ShowSplashOnStartup", true);
  TrayLights = settings.ReadInt16("TrayLights", 1);
  LoadMapProfiles();
  ExportProfiles = settings.ReadBoolean("ExportProfiles", true);
  LastMenuLocation = settings.ReadText("LastMenuLocation", "");
  AutomaticActivation = settings.ReadBoolean("AutomaticActivation", false);
  FilterOutProfiles = settings.ReadBoolean("FilterOutProfiles", false);
}

void CRegistry::LoadRouters() {
  const platform::SettingsSection settings(kApplication, kSection);
  const std::int16_t count = settings.ReadInt16("RouterCount", 0);
  for (std::int32_t number = 1; number <= count; ++number) {
    AddRouter(settings.ReadText(Numbered("Router_", number), ""));
  }
  m_Version = settings.ReadText("Version", "");
  // After a change of version the user chooses again.
  if (modCommon::GetVersionString() != m_Version) return;
  const std::string sClass = settings.ReadText("RouterClass", "");
  if (!sClass.empty()) Router = GetRouterByClass(sClass);
}

void CRegistry::LoadMapProfiles() {
  const std::int16_t count =
      platform::SettingsSection(kApplication, kSection).ReadInt16("MapProfileCount", 0);
  for (std::int32_t number = 1; number <= count; ++number) {
    const auto profile = std::make_shared<CMapProfile>();
    profile->Load(kApplication, kSection, ProfilePrefix(number));
    AddMapProfile(profile, nullptr);
  }
}

void CRegistry::Save() {
  const platform::SettingsSection settings(kApplication, kSection);
  // A plug-in that was installed meanwhile would be lost with the section.
  CheckForPlugIns();
  try {
    platform::TheMachine().settings->DeleteSetting(kApplication, kSection);
  } catch (const base::Error&) {
    // There is no section before the first save.
  }
  FirstFailure failure;
  SaveRouters(failure);
  settings.Write("Version", modCommon::GetVersionString());
  settings.Write("LoadOnStartup", LoadOnStartup);
  settings.Write("ShowSplashOnStartup", ShowSplashOnStartup);
  settings.Write("TrayLights", TrayLights);
  failure.Run([this] {
    platform::TheMachine().systemHelper->SetAutoStart(
        LoadOnStartup, kApplication, modCommon::MakeFullPath(m_InstallPath, "Harbourline.exe"));
  });
  SaveMapProfiles();
  settings.Write("ExportProfiles", ExportProfiles);
  settings.Write("LastMenuLocation", LastMenuLocation);
  settings.Write("AutomaticActivation", AutomaticActivation);
  settings.Write("FilterOutProfiles", FilterOutProfiles);
  failure.Run([this] { modServerHelper::SaveSettings(Router); });
  failure.Rethrow();
}

std::string CRegistry::StoredClass(const platform::LateBoundRef& router, FirstFailure& failure) const {
  const auto known = m_RouterClasses.find(router);
  std::string sClass = known == m_RouterClasses.end() ? std::string() : known->second;
  failure.Run([&] { sClass = modServerHelper::ClassName(router); });
  return sClass;
}

void CRegistry::SaveRouters(FirstFailure& failure) const {
  const platform::SettingsSection settings(kApplication, kSection);
  settings.Write("RouterCount", static_cast<std::int32_t>(m_ccRouters.Count()));
  std::int32_t number = 0;
  for (const auto& router : m_ccRouters) {
    const std::string sClass = StoredClass(router, failure);
    if (!sClass.empty()) settings.Write(Numbered("Router_", ++number), sClass);
  }
  if (RouterValid()) settings.Write("RouterClass", StoredClass(Router, failure));
}

void CRegistry::SaveMapProfiles() const {
  platform::SettingsSection(kApplication, kSection)
      .Write("MapProfileCount", static_cast<std::int32_t>(m_ccMapProfiles.Count()));
  std::int32_t number = 0;
  for (const auto& profile : m_ccMapProfiles) profile->Save(kApplication, kSection, ProfilePrefix(++number));
}
