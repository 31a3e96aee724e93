// The members of CRegistry that keep the list of known routers.

#include "base/Conversions.h"
#include "base/Error.h"
#include "platform/Machine.h"
#include "platform/SettingsSection.h"
#include "plugins/modServerHelper.h"
#include "settings/CRegistry.h"
#include "ui/ComboBox.h"

namespace {

constexpr std::int32_t kMaxWaitingPlugIns = 100;

}  // namespace

void CRegistry::CheckForPlugIns() {
  const platform::SettingsSection settings(kApplication, kSection);
  for (std::int32_t number = 1; number <= kMaxWaitingPlugIns; ++number) {
    const std::string key = "RouterPlugIn_" + base::ToText(number);
    const std::string sClass = settings.ReadText(key, "");
    if (sClass.empty()) continue;
    AddRouter(sClass);
    platform::TheMachine().settings->DeleteSetting(kApplication, kSection, key);
  }
}

void CRegistry::AddRouter(const std::string& sClass) {
  if (sClass.empty()) return;
  try {
    const platform::LateBoundRef router = platform::TheMachine().objects->Create(sClass);
    if (!router) return;
    m_ccRouters.Add(router, modServerHelper::ServerTitle(router));
    m_RouterClasses.emplace(router, sClass);
  } catch (const base::Error&) {
    // Whatever keeps a plug-in from coming in, it is left out without a word.
  }
}

void CRegistry::PopulateRouterList(ui::ComboBox& cb) const {
  cb.Clear();
  for (const auto& router : m_ccRouters) {
    const std::string sTitle = modServerHelper::ServerTitle(router);
    cb.AddItem(sTitle);
    if (RouterValid() && modServerHelper::ServerTitle(Router) == sTitle) cb.ListIndex(cb.NewIndex());
  }
}

platform::LateBoundRef CRegistry::GetRouterByTitle(std::string_view sRouterTitle) const {
  return m_ccRouters.Get(sRouterTitle);
}

platform::LateBoundRef CRegistry::GetRouterByClass(std::string_view sClassName) const {
  for (const auto& router : m_ccRouters) {
    if (modServerHelper::ClassName(router) == sClassName) return router;
  }
  return nullptr;
}
