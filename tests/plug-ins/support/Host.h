#pragma once

#include <functional>
#include <string>

#include "support/LateBound.h"

/// What a program does with plug-ins: registered DLLs, objects made by class name, a message loop.
namespace host {

/// Registers the three plug-ins of the build by regsvr32, once a process. Throws std::runtime_error with the
/// DLL's name when one fails.
void RegisterPlugIns();

/// The full path of a plug-in of the build: "PracticeRouter", "ExampleRouter" or "RecordingPlugIn".
std::wstring PathOf(const std::wstring& plugIn);

/// Runs regsvr32 with the arguments; its exit code.
DWORD RunRegsvr32(const std::wstring& arguments);

/// By ProgID; null when that fails.
late::Ref<IDispatch> Make(const wchar_t* progId);

/// Runs the message loop until the condition holds; false when it doesn't within the time.
bool PumpUntil(const std::function<bool()>& condition, DWORD milliseconds = 10000);
/// Runs the message loop for that long.
void Pump(DWORD milliseconds);

/// Text of the registry, "" when it isn't there.
std::wstring RegistryText(HKEY root, const wchar_t* path, const wchar_t* name);
void SetRegistryText(HKEY root, const wchar_t* path, const wchar_t* name, const std::wstring& text);

}  // namespace host
