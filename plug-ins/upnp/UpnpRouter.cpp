#include "UpnpRouter.h"

#include <shellapi.h>

#include "ProgressWindow.h"
#include "Text.h"
#include "rules/WebAddress.h"

namespace upnp {

using harbourline::Outcome;

namespace {

constexpr CLSID kClassId = {0x5C6A07E4, 0x3F0B, 0x4E9D, {0x9A, 0x37, 0x41, 0xD2, 0x8B, 0x60, 0xC5, 0x1F}};
constexpr wchar_t kProgId[] = L"Harbourline.UpnpRouter";
constexpr wchar_t kTitle[] = L"UPnP Internet Gateway";

constexpr short kProblemsFeature = 1;
constexpr short kTableFeature = 2;
constexpr short kPageFeature = 3;
constexpr short kAcceptFeature = 4;
constexpr short kAnewFeature = 5;

/// The interface stands still meanwhile.
constexpr DWORD kLongestWaitMilliseconds = 20000;
/// Beyond Engine::kFarewell there is something to write down.
constexpr DWORD kLongestFarewellMilliseconds = 6000;
/// The first search takes about half a second where there is a router, and three where there is none.
constexpr wchar_t kStillLooking[] = L"The plug-in is still looking for the router.";

Wish WishOf(const std::vector<harbourline::Mapping>& mappings, short localOctet) {
  Wish wish;
  wish.localOctet = localOctet;
  for (const harbourline::Mapping& mapping : mappings) {
    const std::wstring& text = mapping.description.empty() ? mapping.profileName : mapping.description;
    wish.mappings.push_back({Utf8(text), static_cast<std::int32_t>(mapping.beginPort),
                             static_cast<std::int32_t>(mapping.endPort), mapping.tcp, mapping.udp,
                             mapping.forwardIPAddress, mapping.clearEntry});
  }
  return wish;
}

/// Takes our mappings off the router. Those that it still has are taken off at the next start.
void LeaveRouter(Engine& engine) {
  engine.Leave();
  const std::vector<PortMapping> remaining = engine.Remaining();
  if (remaining.empty()) return;
  std::string text = "Harbourline UPnP: the router still has";
  for (const PortMapping& mapping : remaining) {
    text += (&mapping == &remaining.front() ? " " : ", ") +
            PortsText(mapping.externalPort, mapping.externalPort, mapping.protocol);
  }
  OutputDebugStringA((text + "\n").c_str());
}

std::wstring ProblemsText(const Known& known) {
  if (known.total > 0) {
    return L"The plug-in is at work: port " + std::to_wstring(known.done) + L" of " +
           std::to_wstring(known.total) + L".";
  }
  if (!known.looked) return kStillLooking;
  std::wstring text;
  constexpr std::size_t kMostTold = 12;
  const std::vector<Problem>& problems = known.report.problems;
  for (std::size_t i = 0; i < problems.size() && i < kMostTold; ++i) {
    text += (text.empty() ? L"" : L"\n\n") + Wide(Explain(problems[i]));
  }
  if (problems.size() > kMostTold)
    text += L"\n\nAnd " + std::to_wstring(problems.size() - kMostTold) + L" more.";
  if (!text.empty()) return text;
  return L"All is well: what is wished is on the router " + Wide(known.report.current.name) +
         L", whose WAN address is " + Wide(known.report.current.wanAddress) + L".";
}

}  // namespace

UpnpRouter::UpnpRouter() : settings_(Settings::Load()), events_(new harbourline::EventSource), log_(events_) {
  trace_.SwitchOn(settings_.trace);
}

std::wstring UpnpRouter::ServerTitle() {
  return kTitle;
}
std::wstring UpnpRouter::ClassName() {
  return kProgId;
}
std::wstring UpnpRouter::Version() {
  return std::to_wstring(HARBOURLINE_VERSION_MAJOR) + L"." + std::to_wstring(HARBOURLINE_VERSION_MINOR) +
         L"." + std::to_wstring(HARBOURLINE_VERSION_REVISION);
}

/// The network isn't touched before somebody uses the router.
Worker& UpnpRouter::InUse() {
  if (!worker_) {
    worker_ = std::make_unique<Worker>(stored_, routers_, trace_, settings_.chosenDevice);
    worker_->Do([lease = settings_.lease](Engine& engine) { engine.AskForLease(lease); });
    power_ =
        std::make_unique<PowerWatch>([this] { worker_->Do([](Engine& engine) { engine.LookAround(); }); });
  }
  worker_->KeepAwake();
  return *worker_;
}

bool UpnpRouter::Functional() {
  return InUse().Look().report.functional;
}

std::wstring UpnpRouter::WANIP() {
  return Wide(InUse().Look().report.current.wanAddress);
}

bool UpnpRouter::CheckForWarning(const std::wstring&) {
  const bool warning = InUse().Look().report.warning;
  if (exposedHostToTell_) TellAboutExposedHost();
  // The router may be another by now, or have another address.
  FollowLog();
  return warning;
}

bool UpnpRouter::FollowLog() {
  return log_.Follow(settings_.enableLog, settings_.syslogPort, InUse().Look().report.current);
}

void UpnpRouter::SetEnableLog(bool enable) {
  settings_.enableLog = enable;
  FollowLog();
}

/// The router sends its log to the address by which it knows this computer, so the program's word isn't
/// needed.
Outcome UpnpRouter::SetLogging(const std::wstring&) {
  return FollowLog() ? Outcome::kDone : Outcome::kNotDone;
}

/// The only wait of the interface. True when the task was done in time; otherwise it goes on.
bool UpnpRouter::Await(const Task& task) {
  return WaitWithProgress(task.DoneEvent(), kLongestWaitMilliseconds, [this] {
    const Known known = worker_->Look();
    return ProgressSteps{known.done, known.total};
  });
}

Outcome UpnpRouter::SetPortForwarding(const std::vector<harbourline::Mapping>& mappings, short localOctet) {
  Worker& worker = InUse();
  leftForGood_ = false;
  wished_ = mappings;
  localOctet_ = localOctet;
  const auto task =
      worker.DoInstead([wish = WishOf(mappings, localOctet)](Engine& engine) { engine.Want(wish); });
  const bool done = Await(*task);
  return done && !worker.Look().report.unmet ? Outcome::kDone : Outcome::kNotDone;
}

void UpnpRouter::SetDMZ(long lastOctet) {
  const bool wanted = lastOctet != 0;
  InUse().Do([wanted](Engine& engine) { engine.WantExposedHost(wanted); });
  exposedHostToTell_ = wanted && !exposedHostTold_;
  if (exposedHostToTell_) TellAboutExposedHost();
}

/// Once a run, as soon as somebody listens.
void UpnpRouter::TellAboutExposedHost() {
  if (!events_->HasSinks()) return;
  exposedHostToTell_ = false;
  exposedHostTold_ = true;
  harbourline::LogLine line;
  line.type = L"out";
  line.destination = Wide(worker_->Look().report.current.Address());
  line.miscellaneous = Wide(Explain({Trouble::kNoExposedHost, 0, 0, Protocol::kTcp, {}, 0}));
  try {
    events_->RaiseLog(line);
  } catch (const harbourline::Failure&) {
    // The feature's text tells it as well.
    return;
  }
}

Outcome UpnpRouter::Configure() {
  if (dialog_) {
    SetForegroundWindow(dialog_->Handle());
    return Outcome::kNotDone;
  }
  ConfigureDialog dialog(InUse(), {settings_.chosenDevice, settings_.syslogPort, settings_.trace},
                         [this] { return log_.ArrivalText(); });
  dialog_ = &dialog;
  bool accepted = false;
  try {
    accepted = dialog.Run(GetActiveWindow());
  } catch (...) {
    dialog_ = nullptr;
    throw;
  }
  dialog_ = nullptr;
  if (!accepted) return Outcome::kNotDone;
  const ConfigureDialog::Choice& choice = dialog.Result();
  settings_.syslogPort = choice.syslogPort;
  settings_.trace = choice.trace;
  trace_.SwitchOn(settings_.trace);
  settings_.chosenDevice = choice.device;
  // Even the choice that was made before: the OK is a yes to the router that is there now.
  const auto task =
      InUse().DoInstead([device = settings_.chosenDevice](Engine& engine) { engine.Choose(device); });
  // What is asked next is about the router that was chosen.
  Await(*task);
  settings_.Save();
  FollowLog();
  return Outcome::kDone;
}

void UpnpRouter::ApplicationExiting(const std::wstring&) {
  table_.reset();
  power_.reset();
  if (!worker_) return;
  log_.Follow(false, settings_.syslogPort, {});
  TakeLeave();
}

/// Another plug-in may have been chosen: nobody looks after our mappings then.
UpnpRouter::~UpnpRouter() {
  table_.reset();
  power_.reset();
  if (!leftForGood_) TakeLeave();
}

void UpnpRouter::TakeLeave() {
  if (!worker_) return;
  leftForGood_ = true;
  const auto task = worker_->DoInstead([](Engine& engine) { LeaveRouter(engine); });
  WaitForSingleObject(task->DoneEvent(), kLongestFarewellMilliseconds);
}

std::vector<harbourline::Feature> UpnpRouter::Features() {
  const Known known = InUse().Look();
  const bool well = known.looked && known.total == 0 && known.report.problems.empty();
  std::vector<harbourline::Feature> features = {{well ? L"All is well" : L"What is wrong?", kProblemsFeature},
                                                {L"Show router's mappings", kTableFeature}};
  if (known.report.foreign) features.push_back({L"Use this router", kAcceptFeature});
  if (known.report.functional) features.push_back({L"Set the mappings anew", kAnewFeature});
  if (!known.report.current.page.empty()) features.push_back({L"Open router's page", kPageFeature});
  return features;
}

void UpnpRouter::ActivateFeature(const std::wstring&, short identifier) {
  Worker& worker = InUse();
  if (identifier == kProblemsFeature) ShowProblems();
  if (identifier == kTableFeature) {
    if (!table_) table_ = std::make_unique<TableWindow>(worker);
    table_->BringToFront();
  }
  if (identifier == kAcceptFeature) worker.Do([](Engine& engine) { engine.AcceptRouter(); });
  if (identifier == kAnewFeature) worker.Do([](Engine& engine) { engine.SetAnew(); });
  if (identifier == kPageFeature) OpenPage();
}

/// The shell gets a web page of the router's own and nothing else that it could open.
void UpnpRouter::OpenPage() {
  const FoundGateway router = InUse().Look().report.current;
  const std::wstring page = Wide(RouterPage(router.page, router.Address()));
  if (!page.empty()) ShellExecuteW(nullptr, L"open", page.c_str(), nullptr, nullptr, SW_SHOWNORMAL);
}

void UpnpRouter::ShowProblems() {
  if (showingProblems_) return;
  showingProblems_ = true;
  const Known known = InUse().Look();
  const UINT icon = known.report.warning ? MB_ICONWARNING : MB_ICONINFORMATION;
  MessageBoxW(nullptr, ProblemsText(known).c_str(), kTitle, MB_OK | MB_SETFOREGROUND | icon);
  showingProblems_ = false;
}

std::wstring UpnpRouter::PortForwardingDescription(long port) {
  for (const harbourline::Mapping& mapping : wished_) {
    const bool here = !mapping.clearEntry && mapping.forwardIPAddress == localOctet_;
    if (here && mapping.beginPort <= port && port <= mapping.endPort) return mapping.description;
  }
  return {};
}

}  // namespace upnp

HARBOURLINE_PLUG_INS({upnp::kClassId, upnp::kProgId, upnp::kTitle, harbourline::Make<upnp::UpnpRouter>})
