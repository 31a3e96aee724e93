#include "settings/CRegistry.h"

#include <exception>
#include <utility>
#include <vector>

#include "base/Conversions.h"
#include "base/Error.h"
#include "base/Failures.h"
#include "platform/FilePath.h"
#include "platform/Machine.h"
#include "platform/SettingsSection.h"
#include "plugins/modServerHelper.h"
#include "shell/modCommon.h"

std::unique_ptr<CRegistry> g_Registry;

namespace {

std::string Numbered(std::string_view stem, std::int32_t number) {
  return std::string(stem) + base::ToText(number);
}

std::string ProfilePrefix(std::int32_t number) {
  return Numbered("MP_", number) + "_";
}

}  // namespace

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
  base::Failures failures;
  failures.Run([this] { Save(); });
  Router.reset();
  m_RouterOrigins.clear();
  m_ccRouters.Clear();
  m_ccMapProfiles.Clear();
  PortRanges::Changed();
  m_MapProfileNames.Clear();
  failures.Rethrow();
}

void CRegistry::RouterTitle(std::string_view sRouterTitle) {
  Router = GetRouterByTitle(sRouterTitle);
}

void CRegistry::Load() {
  const platform::SettingsSection settings(kApplication, kSection);
  const std::vector<std::string> waiting = TakeInPlugIns();
  LoadRouters();
  m_InstallPath = platform::FolderOf(platform::TheMachine().process->ExecutablePath());
  modCommon::HelpFile(modCommon::MakeFullPath(m_InstallPath, "Harbourline.hlp"));
  LoadOnStartup = settings.ReadBoolean("LoadOnStartup", true);
  ShowSplashOnStartup = settings.ReadBoolean("ShowSplashOnStartup", true);
  TrayLights = settings.ReadInt16("TrayLights", 1);
  LoadMapProfiles();
  ExportProfiles = settings.ReadBoolean("ExportProfiles", true);
  LastMenuLocation = settings.ReadText("LastMenuLocation", "");
  AutomaticActivation = settings.ReadBoolean("AutomaticActivation", false);
  FilterOutProfiles = settings.ReadBoolean("FilterOutProfiles", false);
  // Not before everything is loaded: a start that fails keeps what installers have announced. One that can't
  // be deleted is taken in once more, which changes nothing.
  try {
    Forget(waiting);
  } catch (const base::Error& failure) {
    platform::TheMachine().debug->Trace(failure.what());
  }
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
  const std::int32_t count =
      platform::SettingsSection(kApplication, kSection).ReadInt32("MapProfileCount", 0);
  for (std::int32_t number = 1; number <= count; ++number) {
    const auto profile = std::make_shared<CMapProfile>();
    profile->Load(kApplication, kSection, ProfilePrefix(number));
    AddMapProfile(profile, nullptr);
  }
}

void CRegistry::Save() {
  base::Failures failures;
  const platform::SettingsWriter settings(failures, kApplication, kSection);
  // A plug-in that was installed meanwhile would be lost with the section.
  failures.Run([this] { CheckForPlugIns(); });
  try {
    platform::TheMachine().settings->DeleteSetting(kApplication, kSection);
  } catch (const base::Error&) {
    // There is no section before the first save.
  }
  SaveRouters(failures);
  settings.Write("Version", modCommon::GetVersionString());
  settings.Write("LoadOnStartup", LoadOnStartup);
  settings.Write("ShowSplashOnStartup", ShowSplashOnStartup);
  settings.Write("TrayLights", TrayLights);
  failures.Run([this] {
    platform::TheMachine().systemHelper->SetAutoStart(
        LoadOnStartup, kApplication, modCommon::MakeFullPath(m_InstallPath, "Harbourline.exe"));
  });
  SaveMapProfiles(failures);
  settings.Write("ExportProfiles", ExportProfiles);
  settings.Write("LastMenuLocation", LastMenuLocation);
  settings.Write("AutomaticActivation", AutomaticActivation);
  settings.Write("FilterOutProfiles", FilterOutProfiles);
  failures.Run([this] { modServerHelper::SaveSettings(Router); });
  failures.Rethrow();
}

void CRegistry::SaveRouters(base::Failures& failures) const {
  const platform::SettingsWriter settings(failures, kApplication, kSection);
  settings.Write("RouterCount", static_cast<std::int32_t>(m_ccRouters.Count()));
  std::int32_t number = 0;
  for (const auto& router : m_ccRouters) {
    const std::string sClass = ClassOf(router, failures);
    if (!sClass.empty()) settings.Write(Numbered("Router_", ++number), sClass);
  }
  if (RouterValid()) settings.Write("RouterClass", ClassOf(Router, failures));
}

void CRegistry::SaveMapProfiles(base::Failures& failures) const {
  platform::SettingsWriter(failures, kApplication, kSection)
      .Write("MapProfileCount", static_cast<std::int32_t>(m_ccMapProfiles.Count()));
  std::int32_t number = 0;
  for (const auto& profile : m_ccMapProfiles) {
    ++number;
    failures.Run([&] { profile->Save(kApplication, kSection, ProfilePrefix(number)); });
  }
}
