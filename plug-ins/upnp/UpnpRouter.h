#pragma once

#include <memory>
#include <string>
#include <vector>

#include "ActivityLog.h"
#include "ConfigureDialog.h"
#include "HarbourlinePlugIn.h"
#include "PowerWatch.h"
#include "Settings.h"
#include "TableWindow.h"
#include "Worker.h"
#include "rules/TraceFile.h"

namespace upnp {

/// Any router that speaks UPnP. What the contract asks at every moment is answered from what the worker
/// knows; only a wish waits for the router.
class UpnpRouter final : public harbourline::RouterPlugIn {
 public:
  UpnpRouter();
  ~UpnpRouter() override;

 protected:
  std::wstring ServerTitle() override;
  std::wstring ClassName() override;
  std::wstring Version() override;
  bool Functional() override;
  std::wstring WANIP() override;
  harbourline::Outcome SetPortForwarding(const std::vector<harbourline::Mapping>& mappings,
                                         short localOctet) override;
  harbourline::EventSource* EventHandler() override { return events_.get(); }
  void SetDMZ(long lastOctet) override;
  bool EnableLog() override { return settings_.enableLog; }
  void SetEnableLog(bool enable) override;
  harbourline::Outcome Configure() override;
  bool CheckForWarning(const std::wstring& localAddress) override;
  harbourline::Outcome SetLogging(const std::wstring& localAddress) override;
  void ApplicationExiting(const std::wstring& localAddress) override;
  std::vector<harbourline::Feature> Features() override;
  void ActivateFeature(const std::wstring& localAddress, short identifier) override;
  std::wstring PortForwardingDescription(long port) override;
  void SaveSettings() override { settings_.Save(); }

 private:
  Worker& InUse();
  bool Await(const Task& task);
  bool FollowLog();
  void TakeLeave();
  void ShowProblems();
  void TellAboutExposedHost();
  void OpenPage();

  Settings settings_;
  StoredMappings stored_;
  StoredRouters routers_;
  TraceFile trace_{TracePath()};
  harbourline::Ref<harbourline::EventSource> events_;
  ActivityLog log_;
  std::unique_ptr<Worker> worker_;
  std::unique_ptr<PowerWatch> power_;
  std::unique_ptr<TableWindow> table_;
  ConfigureDialog* dialog_ = nullptr;  ///< while it is on the screen
  std::vector<harbourline::Mapping> wished_;
  short localOctet_ = 0;
  bool leftForGood_ = false;  ///< nothing of ours is to be on the router any more
  bool exposedHostToTell_ = false;
  bool exposedHostTold_ = false;
  bool showingProblems_ = false;
};

}  // namespace upnp
