#include "support/Host.h"

#include <stdexcept>

namespace host {

std::wstring PathOf(const std::wstring& plugIn) {
  std::wstring path(MAX_PATH, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), MAX_PATH));
  const std::wstring folder = path.substr(0, path.rfind(L'\\'));
  if (plugIn == L"PracticeRouter") return folder + L"\\..\\..\\plug-ins\\practice-router\\PracticeRouter.dll";
  if (plugIn == L"ExampleRouter") return folder + L"\\..\\..\\plug-ins\\sdk\\ExampleRouter.dll";
  return folder + L"\\recording\\RecordingPlugIn.dll";
}

DWORD RunRegsvr32(const std::wstring& arguments) {
  std::wstring command = L"regsvr32 " + arguments;
  STARTUPINFOW startup = {};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process = {};
  constexpr DWORD kNotStarted = 0xFFFFFFFF;
  if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                      &process)) {
    return kNotStarted;
  }
  WaitForSingleObject(process.hProcess, 30000);
  DWORD code = kNotStarted;
  GetExitCodeProcess(process.hProcess, &code);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return code;
}

void RegisterPlugIns() {
  for (const wchar_t* plugIn : {L"PracticeRouter", L"ExampleRouter", L"RecordingPlugIn"}) {
    const DWORD code = RunRegsvr32(L"/s \"" + PathOf(plugIn) + L"\"");
    if (code == 0) continue;
    const std::wstring name = plugIn;
    throw std::runtime_error("regsvr32 " + std::string(name.begin(), name.end()) + ".dll ends with " +
                             std::to_string(code));
  }
}

late::Ref<IDispatch> Make(const wchar_t* progId) {
  CLSID id = {};
  if (FAILED(CLSIDFromProgID(progId, &id))) return nullptr;
  void* object = nullptr;
  if (FAILED(CoCreateInstance(id, nullptr, CLSCTX_SERVER, IID_IDispatch, &object))) return nullptr;
  return late::Ref<IDispatch>(static_cast<IDispatch*>(object));
}

bool PumpUntil(const std::function<bool()>& condition, DWORD milliseconds) {
  const ULONGLONG end = GetTickCount64() + milliseconds;
  while (!condition()) {
    const ULONGLONG now = GetTickCount64();
    if (now >= end) return false;
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 20, QS_ALLINPUT);
    MSG message = {};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
      TranslateMessage(&message);
      DispatchMessageW(&message);
    }
  }
  return true;
}

void Pump(DWORD milliseconds) {
  PumpUntil([] { return false; }, milliseconds);
}

std::wstring RegistryText(HKEY root, const wchar_t* path, const wchar_t* name) {
  wchar_t text[1024] = L"";
  DWORD bytes = sizeof text;
  return RegGetValueW(root, path, name, RRF_RT_REG_SZ, nullptr, text, &bytes) == ERROR_SUCCESS ? text : L"";
}

void SetRegistryText(HKEY root, const wchar_t* path, const wchar_t* name, const std::wstring& text) {
  RegSetKeyValueW(root, path, name, REG_SZ, text.c_str(),
                  static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
}

}  // namespace host
