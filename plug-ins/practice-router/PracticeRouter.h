#pragma once

#include <memory>
#include <string>
#include <vector>

#include "ConfigureDialog.h"
#include "HarbourlinePlugIn.h"
#include "LogTraffic.h"
#include "RouterState.h"
#include "RouterWindow.h"

namespace practice {

/// A router that needs no router: it keeps what it is told, shows it in a window of its own and makes log
/// traffic.
class PracticeRouter final : public harbourline::RouterPlugIn {
 public:
  PracticeRouter();

 protected:
  std::wstring ServerTitle() override;
  std::wstring ClassName() override;
  std::wstring Version() override;
  bool Functional() override { return state_.settings.functional; }
  std::wstring WANIP() override { return state_.settings.wanAddress; }
  harbourline::Outcome SetPortForwarding(const std::vector<harbourline::Mapping>& mappings,
                                         short localOctet) override;
  harbourline::EventSource* EventHandler() override { return events_.get(); }
  void SetDMZ(long lastOctet) override { state_.settings.dmzHost = lastOctet; }
  bool EnableLog() override { return state_.settings.enableLog; }
  void SetEnableLog(bool enable) override;
  harbourline::Outcome Configure() override;
  bool CheckForWarning(const std::wstring& localAddress) override;
  harbourline::Outcome SetLogging(const std::wstring& localAddress) override;
  void ApplicationExiting(const std::wstring& localAddress) override;
  std::vector<harbourline::Feature> Features() override;
  void ActivateFeature(const std::wstring& localAddress, short identifier) override;
  std::wstring PortForwardingDescription(long port) override;
  void SaveSettings() override { state_.settings.Save(); }
  void OnCalled(const Call& call) override;

 private:
  RouterWindow& Window();
  void Learn(const std::wstring& localAddress);
  void RaiseTraffic();
  void RaiseError();
  void ConfigureFromWindow();

  RouterState state_;
  harbourline::Ref<harbourline::EventSource> events_;
  TrafficMaker maker_;
  TrafficTimer timer_;
  std::unique_ptr<RouterWindow> window_;
  ConfigureDialog* dialog_ = nullptr;  ///< while it is on the screen
  bool raising_ = false;
};

}  // namespace practice
