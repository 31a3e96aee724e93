// upnp_driver ADDRESS: makes the UPnP plug-in as Harbourline does, on the computer with this local address,
// and does what the lines of its input say, each answered by one line:
//
//   want OCTET [MAPPING...]   the whole wish of this computer; a mapping is TCP:8080-8081, or TCP:8080-8081>3
//   for another
//                             one, with a ! in front for bClearEntry. "done" or "not done", and the
//                             milliseconds
//   ask MEMBER                a property or function without argument, as Version: its value
//   warning                   "True" or "False"
//   features                  the captions, with " | " between them
//   feature CAPTION           chooses it in the menu: "done", or "there is none"
//   log on|off                EnableLog and SetLogging: "done" or "not done"
//   filter PORT               IdentifyPort says from now on that this port is to be left out
//   dmz OCTET                 "done"
//   rows                      what the events brought since the last time, with " | " between them
//   wait MILLISECONDS         lets the plug-in live so long; "done"
//   exit                      the farewell and the end
//   vanish                    the end without farewell
//
// Between the lines it runs its message loop. "failed", with the text, when a call fails.

#include <windows.h>

#include <objbase.h>
#include <ocidl.h>

#include <cstdio>
#include <deque>
#include <iostream>
#include <mutex>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "support/Host.h"
#include "support/LateBound.h"

namespace {

constexpr UINT kLineCame = WM_APP + 1;

std::string Narrow(const std::wstring& text) {
  std::string narrow;
  for (const wchar_t c : text) narrow += c < 128 ? static_cast<char>(c) : '?';
  return narrow;
}

std::string TextOf(const VARIANT& value) {
  VARIANT text = {};
  if (FAILED(VariantChangeType(&text, const_cast<VARIANT*>(&value), VARIANT_ALPHABOOL, VT_BSTR))) return "?";
  std::string narrow = Narrow(std::wstring(text.bstrVal, SysStringLen(text.bstrVal)));
  VariantClear(&text);
  return narrow;
}

late::MappingFields ParseMapping(std::string text) {
  late::MappingFields fields;
  fields.profile = L"Proof";
  fields.description = L"Proof";
  fields.clear = text.front() == '!';
  if (fields.clear) text.erase(0, 1);
  char protocol[8] = {};
  int octet = 2;
  if (std::sscanf(text.c_str(), "%7[A-Z]:%ld-%ld>%d", protocol, &fields.begin, &fields.end, &octet) < 3) {
    throw std::runtime_error("no mapping: " + text);
  }
  fields.tcp = std::string(protocol) != "UDP";
  fields.udp = std::string(protocol) != "TCP";
  fields.host = static_cast<short>(octet);
  return fields;
}

class Driver {
 public:
  explicit Driver(const std::wstring& address)
      : address_(address.c_str()), sink_([this](DISPID event, std::vector<VARIANT>& arguments, EXCEPINFO*) {
          return OnEvent(event, arguments);
        }) {
    plugIn_ = host::Make(L"Harbourline.UpnpRouter");
    if (!plugIn_) throw std::runtime_error("the plug-in can't be made");
    Advise();
  }

  /// False when that was the last line.
  bool Do(const std::string& line) {
    std::istringstream words(line);
    std::string verb;
    words >> verb;
    if (verb == "vanish") TerminateProcess(GetCurrentProcess(), 9);
    std::string answer;
    try {
      answer = Answer(verb, words);
    } catch (const std::exception& failure) {
      answer = std::string("failed ") + failure.what();
    }
    std::cout << answer << std::endl;
    return verb != "exit";
  }

 private:
  std::string Answer(const std::string& verb, std::istringstream& words) {
    std::string word;
    if (verb == "want") return Want(words);
    if (verb == "ask") {
      words >> word;
      return TextOf(Call((L"IServer_" + std::wstring(word.begin(), word.end())).c_str()).value);
    }
    if (verb == "warning") return TextOf(Call(L"IServer_CheckForWarning", {address_.Reference()}).value);
    if (verb == "features") return Features();
    if (verb == "feature") {
      std::getline(words >> std::ws, word);
      return Activate(word);
    }
    if (verb == "log") {
      words >> word;
      late::Put(plugIn_.get(), L"IServer_EnableLog", late::Value(word == "on"));
      return Call(L"IServer_SetLogging", {address_.Reference()}).IsBool(false) ? "done" : "not done";
    }
    if (verb == "filter") {
      long port = 0;
      words >> port;
      filtered_.insert(port);
      return "done";
    }
    if (verb == "dmz") {
      long octet = 0;
      words >> octet;
      late::Put(plugIn_.get(), L"IServer_DMZ", late::Value(octet));
      return "done";
    }
    if (verb == "rows") return Joined(std::exchange(rows_, {}));
    if (verb == "wait") {
      DWORD milliseconds = 0;
      words >> milliseconds;
      host::Pump(milliseconds);
      return "done";
    }
    if (verb == "exit") {
      Call(L"IServer_ApplicationExiting", {address_.Value()});
      return "done";
    }
    throw std::runtime_error("what is " + verb + "?");
  }

  std::string Want(std::istringstream& words) {
    short octet = 0;
    words >> octet;
    std::vector<late::MappingFields> mappings;
    for (std::string word; words >> word;) mappings.push_back(ParseMapping(word));
    const std::vector<IDispatch*> none = {nullptr};
    late::MappingArray array = mappings.empty() ? late::MappingArray(none, 10) : late::MappingArray(mappings);
    const ULONGLONG start = GetTickCount64();
    const bool done =
        Call(L"IServer_SetPortForwarding", {array.Reference(), late::Reference(octet)}).IsBool(false);
    return (done ? "done " : "not done ") + std::to_string(GetTickCount64() - start);
  }

  std::string Features() {
    std::vector<std::string> captions;
    for (const auto& [caption, identifier] : ListFeatures()) captions.push_back(caption);
    return Joined(captions);
  }

  std::string Activate(const std::string& caption) {
    for (auto [text, identifier] : ListFeatures()) {
      if (text != caption) continue;
      Call(L"IServer_ActivateFeaure", {address_.Reference(), late::Reference(identifier)});
      return "done";
    }
    return "there is none";
  }

  std::vector<std::pair<std::string, short>> ListFeatures() {
    SAFEARRAYBOUND bound = {0, 0};
    SAFEARRAY* captions = SafeArrayCreate(VT_BSTR, 1, &bound);
    SAFEARRAY* identifiers = SafeArrayCreate(VT_I2, 1, &bound);
    Call(L"IServer_GetFeatures", {late::Reference(captions, VT_BSTR), late::Reference(identifiers, VT_I2)});
    std::vector<std::pair<std::string, short>> features;
    LONG upper = -1;
    SafeArrayGetUBound(captions, 1, &upper);
    for (LONG i = 0; i <= upper; ++i) {
      BSTR text = nullptr;
      short identifier = 0;
      if (SUCCEEDED(SafeArrayGetElement(captions, &i, &text)) &&
          SUCCEEDED(SafeArrayGetElement(identifiers, &i, &identifier))) {
        features.emplace_back(Narrow(text), identifier);
      }
      SysFreeString(text);
    }
    SafeArrayDestroy(captions);
    SafeArrayDestroy(identifiers);
    return features;
  }

  static std::string Joined(const std::vector<std::string>& texts) {
    std::string joined;
    for (const std::string& text : texts) joined += (joined.empty() ? "" : " | ") + text;
    return joined;
  }

  late::Answer Call(const wchar_t* member, std::vector<VARIANT> arguments = {}) {
    late::Answer answer = late::Call(plugIn_.get(), member, std::move(arguments));
    if (FAILED(answer.code)) throw std::runtime_error(Narrow(member) + ": " + Narrow(answer.exceptionText));
    return answer;
  }

  void Advise() {
    const late::Answer source = Call(L"IServer_EventHandler");
    if (source.value.vt != VT_DISPATCH || !source.value.pdispVal) return;
    const auto container =
        late::Query<IConnectionPointContainer>(source.value.pdispVal, IID_IConnectionPointContainer);
    IConnectionPoint* point = nullptr;
    sink_.acceptedInterface = late::kEvents;
    if (!container || FAILED(container->FindConnectionPoint(late::kEvents, &point))) return;
    DWORD cookie = 0;
    point->Advise(&sink_, &cookie);
    point->Release();
  }

  HRESULT OnEvent(DISPID event, std::vector<VARIANT>& arguments) {
    if (event == 2) {
      *arguments[1].pbstrVal = SysAllocString(L"named");
      *arguments[2].pboolVal = filtered_.count(arguments[0].lVal) > 0 ? VARIANT_TRUE : VARIANT_FALSE;
      return S_OK;
    }
    std::string row = event == 1 ? "Error" : "Log";
    for (const VARIANT& argument : arguments) row += " " + TextOf(argument);
    rows_.push_back(row);
    return S_OK;
  }

  late::Text address_;
  late::Sink sink_;
  late::Ref<IDispatch> plugIn_;
  std::vector<std::string> rows_;
  std::set<long> filtered_;
};

/// The input, read by a thread of its own, so that the message loop runs meanwhile.
class Input {
 public:
  Input() : reader_([this, thread = GetCurrentThreadId()] { Read(thread); }) { reader_.detach(); }

  /// Runs the message loop until there is a line; false at the end of the input.
  bool Next(std::string& line) {
    while (true) {
      {
        const std::lock_guard lock(mutex_);
        if (!lines_.empty()) {
          line = lines_.front();
          lines_.pop_front();
          return true;
        }
        if (ended_) return false;
      }
      MSG message = {};
      if (GetMessageW(&message, nullptr, 0, 0) <= 0) return false;
      TranslateMessage(&message);
      DispatchMessageW(&message);
    }
  }

 private:
  void Read(DWORD thread) {
    for (std::string line; std::getline(std::cin, line);) {
      if (!line.empty() && line.back() == '\r') line.pop_back();
      {
        const std::lock_guard lock(mutex_);
        lines_.push_back(line);
      }
      PostThreadMessageW(thread, kLineCame, 0, 0);
    }
    {
      const std::lock_guard lock(mutex_);
      ended_ = true;
    }
    PostThreadMessageW(thread, kLineCame, 0, 0);
  }

  std::mutex mutex_;
  std::deque<std::string> lines_;
  bool ended_ = false;
  std::thread reader_;
};

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) {
    std::cerr << "upnp_driver ADDRESS\n";
    return 2;
  }
  OleInitialize(nullptr);
  int result = 0;
  try {
    const std::string address = arguments[1];
    Driver driver(std::wstring(address.begin(), address.end()));
    MSG message = {};
    PeekMessageW(&message, nullptr, WM_USER, WM_USER, PM_NOREMOVE);
    std::cout << "ready" << std::endl;
    Input input;
    std::string line;
    while (input.Next(line) && driver.Do(line)) continue;
  } catch (const std::exception& failure) {
    std::cout << "failed " << failure.what() << std::endl;
    result = 1;
  }
  OleUninitialize();
  return result;
}
