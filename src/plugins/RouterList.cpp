// The members of CRegistry that keep the list of known routers.

#include <utility>

#include "base/Conversions.h"
#include "base/Error.h"
#include "base/Failures.h"
#include "platform/Machine.h"
#include "platform/SettingsSection.h"
#include "plugins/modServerHelper.h"
#include "settings/CRegistry.h"
#include "ui/ComboBox.h"

namespace {

constexpr std::int32_t kMaxWaitingPlugIns = 100;

}  // namespace

void CRegistry::CheckForPlugIns() {
  Forget(TakeInPlugIns());
}

std::vector<std::string> CRegistry::TakeInPlugIns() {
  const platform::SettingsSection settings(kApplication, kSection);
  std::vector<std::string> keys;
  for (std::int32_t number = 1; number <= kMaxWaitingPlugIns; ++number) {
    std::string key = "RouterPlugIn_" + base::ToText(number);
    const std::string sClass = settings.ReadText(key, "");
    if (sClass.empty()) continue;
    AddRouter(sClass);
    keys.push_back(std::move(key));
  }
  return keys;
}

void CRegistry::Forget(const std::vector<std::string>& waiting) {
  base::Failures failures;
  for (const std::string& key : waiting) {
    failures.Run([&] { platform::TheMachine().settings->DeleteSetting(kApplication, kSection, key); });
  }
  failures.Rethrow();
}

std::string CRegistry::FoldTitle(std::string_view sTitle) {
  return platform::TheMachine().codePage->FoldCase(sTitle);
}

void CRegistry::AddRouter(const std::string& sClass) {
  if (sClass.empty()) return;
  try {
    const platform::LateBoundRef router = platform::TheMachine().objects->Create(sClass);
    if (!router) return;
    const std::string sTitle = modServerHelper::ServerTitle(router);
    m_ccRouters.Add(router, sTitle);
    m_RouterOrigins.emplace(router, RouterOrigin{sClass, sTitle});
  } catch (const base::Error&) {
    // Whatever keeps a plug-in from coming in, it is left out without a word.
  }
}

std::string CRegistry::TitleOf(const platform::LateBoundRef& router, base::Failures& failures) const {
  const auto origin = m_RouterOrigins.find(router);
  std::string sTitle = origin == m_RouterOrigins.end() ? std::string() : origin->second.sTitle;
  failures.Run([&] { sTitle = modServerHelper::ServerTitle(router); });
  return sTitle;
}

std::string CRegistry::ClassOf(const platform::LateBoundRef& router, base::Failures& failures) const {
  const auto origin = m_RouterOrigins.find(router);
  std::string sClass = origin == m_RouterOrigins.end() ? std::string() : origin->second.sClass;
  failures.Run([&] { sClass = modServerHelper::ClassName(router); });
  return sClass;
}

void CRegistry::PopulateRouterList(ui::ComboBox& cb) const {
  base::Failures failures;
  cb.Clear();
  std::int32_t entries = 0;
  for (const auto& router : m_ccRouters) {
    const std::string sTitle = TitleOf(router, failures);
    // A plug-in may let a click through that has filled the control meanwhile.
    if (cb.ListCount() != entries) break;
    cb.AddItem(sTitle);
    ++entries;
    if (RouterValid() && TitleOf(Router, failures) == sTitle && cb.ListCount() == entries) {
      failures.Run([&cb] { cb.ListIndex(cb.NewIndex()); });
    }
  }
  failures.Rethrow();
}

platform::LateBoundRef CRegistry::GetRouterByTitle(std::string_view sRouterTitle) const {
  return m_ccRouters.Get(sRouterTitle);
}

platform::LateBoundRef CRegistry::GetRouterByClass(std::string_view sClassName) const {
  // A plug-in that can't name its class is looked for by the one that it was made from; the save reports it.
  base::Failures unused;
  for (const auto& router : m_ccRouters) {
    if (ClassOf(router, unused) == sClassName) return router;
  }
  return nullptr;
}
