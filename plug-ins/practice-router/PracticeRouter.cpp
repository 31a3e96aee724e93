#include "PracticeRouter.h"

#include <array>
#include <string_view>

namespace practice {

using harbourline::Outcome;

namespace {

constexpr CLSID kClassId = {0xB06138F8, 0x05D7, 0x423B, {0x9D, 0x45, 0x14, 0x76, 0xF9, 0xB3, 0xC3, 0x21}};
constexpr wchar_t kProgId[] = L"Harbourline.PracticeRouter";
constexpr wchar_t kTitle[] = L"Practice Router";

constexpr short kShowWindowFeature = 1;
constexpr short kToggleWarningFeature = 2;

struct NamedPort {
  long port;
  const wchar_t* name;
};
constexpr std::array<NamedPort, 3> kOwnPorts = {
    {{4711, L"Practice Chat"}, {5800, L"Practice Game"}, {8123, L"Practice Web Page"}}};

/// Calls that say nothing about the router being the one in use.
constexpr std::array<std::wstring_view, 4> kSilentMembers = {
    L"IServer_ServerTitle", L"IServer_ClassName", L"IServer_SaveSettings", L"IServer_ApplicationExiting"};

std::wstring Describe(const VARIANT& value) {
  const VARIANT& plain = harbourline::Value::Unwrap(value);
  if (plain.vt & VT_ARRAY) {
    const SAFEARRAY* array = !(plain.vt & VT_BYREF) ? plain.parray : plain.pparray ? *plain.pparray : nullptr;
    if (!array || array->cDims != 1) return L"an array";
    if (array->rgsabound[0].lLbound == harbourline::kEmptyRequestBound) return L"nothing";
    const ULONG count = array->rgsabound[0].cElements;
    if ((plain.vt & VT_TYPEMASK) != VT_DISPATCH) return L"array of " + std::to_wstring(count);
    return std::to_wstring(count) + (count == 1 ? L" mapping" : L" mappings");
  }
  if (plain.vt == VT_EMPTY) return {};
  if (plain.vt == VT_DISPATCH) return plain.pdispVal ? L"an object" : L"no object";
  harbourline::Value text;
  if (plain.vt == VT_BOOL) return plain.boolVal ? L"True" : L"False";
  if (FAILED(harbourline::Value::Convert(plain, VT_BSTR, text))) return L"?";
  const bool isText = (plain.vt & VT_TYPEMASK) == VT_BSTR;
  return isText ? L"\"" + text.Text() + L"\"" : text.Text();
}

std::wstring DescribeFailure(HRESULT code) {
  std::array<wchar_t, 32> text = {};
  wsprintfW(text.data(), L"failed (%08lX)", code);
  return text.data();
}

}  // namespace

PracticeRouter::PracticeRouter() : events_(new harbourline::EventSource), timer_([this] { RaiseTraffic(); }) {
  state_.settings = Settings::Load();
}

std::wstring PracticeRouter::ServerTitle() {
  return kTitle;
}
std::wstring PracticeRouter::ClassName() {
  return kProgId;
}
std::wstring PracticeRouter::Version() {
  return std::to_wstring(HARBOURLINE_VERSION_MAJOR) + L"." + std::to_wstring(HARBOURLINE_VERSION_MINOR) +
         L"." + std::to_wstring(HARBOURLINE_VERSION_REVISION);
}

Outcome PracticeRouter::SetPortForwarding(const std::vector<harbourline::Mapping>& mappings,
                                          short localOctet) {
  if (state_.settings.refusePortForwarding) return Outcome::kNotDone;
  state_.table.Apply(mappings, localOctet);
  state_.localOctet = localOctet;
  WriteTableForDemonstration(state_.table);
  Window().RefreshTable();
  return Outcome::kDone;
}

void PracticeRouter::SetEnableLog(bool enable) {
  state_.settings.enableLog = enable;
  timer_.Run(state_.MakesTraffic());
}

Outcome PracticeRouter::SetLogging(const std::wstring& localAddress) {
  Learn(localAddress);
  state_.loggingAddress = localAddress;
  timer_.Run(state_.MakesTraffic());
  return Outcome::kDone;
}

Outcome PracticeRouter::Configure() {
  if (dialog_) {
    SetForegroundWindow(dialog_->Handle());
    return Outcome::kNotDone;
  }
  ConfigureDialog dialog(state_.settings);
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
  // The program may have switched the log and the DMZ host while the dialog was up.
  Settings settings = dialog.Result();
  settings.enableLog = state_.settings.enableLog;
  settings.dmzHost = state_.settings.dmzHost;
  state_.settings = settings;
  timer_.Run(state_.MakesTraffic());
  state_.settings.Save();
  return Outcome::kDone;
}

bool PracticeRouter::CheckForWarning(const std::wstring& localAddress) {
  Learn(localAddress);
  return state_.settings.warning;
}

void PracticeRouter::ApplicationExiting(const std::wstring& localAddress) {
  Learn(localAddress);
  timer_.Run(false);
}

std::vector<harbourline::Feature> PracticeRouter::Features() {
  return {{L"Show the router's window", kShowWindowFeature}, {L"Toggle the warning", kToggleWarningFeature}};
}

void PracticeRouter::ActivateFeature(const std::wstring& localAddress, short identifier) {
  Learn(localAddress);
  if (identifier == kShowWindowFeature) Window().BringToFront();
  if (identifier == kToggleWarningFeature) state_.settings.warning = !state_.settings.warning;
}

std::wstring PracticeRouter::PortForwardingDescription(long port) {
  for (const NamedPort& named : kOwnPorts) {
    if (named.port == port) return named.name;
  }
  return {};
}

void PracticeRouter::OnCalled(const Call& call) {
  // Harbourline asks back about the port of each log line; these questions would bury the other calls.
  if (raising_) return;
  std::wstring text = call.member;
  if (call.write) {
    text += L" = " + Describe(call.arguments.Raw(0));
  } else if (call.arguments.Count() > 0) {
    text += L"(";
    for (std::size_t i = 0; i < call.arguments.Count(); ++i) {
      text += (i > 0 ? L", " : L"") + Describe(call.arguments.Raw(i));
    }
    text += L")";
  }
  state_.calls.Add(text, FAILED(call.code) ? DescribeFailure(call.code) : Describe(call.result));
  for (const std::wstring_view silent : kSilentMembers) {
    if (silent == call.member) {
      if (window_) window_->Refresh();
      return;
    }
  }
  Window().Refresh();
}

/// The window comes up when the router is used for the first time. The user may close it; a feature brings it
/// back.
RouterWindow& PracticeRouter::Window() {
  if (!window_) {
    window_ = std::make_unique<RouterWindow>(
        state_, RouterWindow::Actions{[this] { RaiseError(); }, [this] { ConfigureFromWindow(); }});
    window_->Appear();
    WriteTableForDemonstration(state_.table);
  }
  return *window_;
}

void PracticeRouter::Learn(const std::wstring& localAddress) {
  if (state_.localAddress == localAddress) return;
  state_.localAddress = localAddress;
  if (window_) window_->RefreshTable();
}

void PracticeRouter::RaiseTraffic() {
  // Whoever takes a line may show a message and let the timer tick meanwhile.
  if (raising_ || !events_->HasSinks()) return;
  const harbourline::Ref<PracticeRouter> alive(this);
  raising_ = true;
  try {
    harbourline::LogLine line = maker_.Next(state_.loggingAddress, state_.localOctet, state_.table);
    const harbourline::PortAnswer answer = events_->IdentifyPort(line.destinationPort);
    if (answer.filterOut) {
      ++state_.linesFiltered;
    } else {
      line.miscellaneous = answer.description;
      events_->RaiseLog(line);
      ++state_.linesRaised;
    }
  } catch (const harbourline::Failure& failure) {
    state_.calls.Add(L"A line for the log", failure.Text());
  }
  raising_ = false;
  if (window_) window_->Refresh();
}

void PracticeRouter::ConfigureFromWindow() {
  const harbourline::Ref<PracticeRouter> alive(this);
  try {
    Configure();
  } catch (const harbourline::Failure& failure) {
    state_.calls.Add(L"The configuration", failure.Text());
  }
  Window().Refresh();
}

void PracticeRouter::RaiseError() {
  constexpr short kErrorNumber = 1001;
  const harbourline::Ref<PracticeRouter> alive(this);
  try {
    events_->RaiseError(L"The practice router was asked for an error.", kErrorNumber);
    state_.calls.Add(L"An error for Harbourline", events_->HasSinks() ? L"" : L"nobody listens");
  } catch (const harbourline::Failure& failure) {
    state_.calls.Add(L"An error for Harbourline", failure.Text());
  }
  Window().Refresh();
}

}  // namespace practice

HARBOURLINE_PLUG_INS({practice::kClassId, practice::kProgId, practice::kTitle,
                      harbourline::Make<practice::PracticeRouter>})
