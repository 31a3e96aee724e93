#include "support/Recording.h"

#include <windows.h>

#include <algorithm>
#include <cstring>
#include <fstream>

#include "support/Files.h"

namespace {

constexpr char kScripts[] = "Software\\Harbourline Recording";

}  // namespace

Recording::Recording() {
  static int number = 0;
  char folder[MAX_PATH] = "";
  GetTempPathA(sizeof folder, folder);
  path_ = std::string(folder) + "recording-" + std::to_string(GetCurrentProcessId()) + "-" +
          std::to_string(++number) + ".txt";
  RegisterPlugIn(HARBOURLINE_RECORDING_PLUG_IN);
  RegDeleteTreeA(HKEY_CURRENT_USER, kScripts);
  SetEnvironmentVariableA("HARBOURLINE_RECORDING", path_.c_str());
}

Recording::~Recording() {
  SetEnvironmentVariableA("HARBOURLINE_RECORDING", nullptr);
  DeleteFileA(path_.c_str());
}

void Recording::Script(const std::string& className, const std::string& name, const std::string& value) {
  RegSetKeyValueA(HKEY_CURRENT_USER, (std::string(kScripts) + "\\" + className).c_str(), name.c_str(), REG_SZ,
                  value.c_str(), static_cast<DWORD>(value.size() + 1));
}

bool Recording::RegisterOfOtherWidth(const std::string& className, const std::string& path) {
  std::string image = ReadFile(BuiltFile(HARBOURLINE_RECORDING_PLUG_IN));
  IMAGE_DOS_HEADER dos{};
  if (image.size() < sizeof dos) return false;
  std::memcpy(&dos, image.data(), sizeof dos);
  const auto header = static_cast<std::size_t>(dos.e_lfanew) + sizeof(DWORD);
  const WORD other = sizeof(void*) == 8 ? IMAGE_FILE_MACHINE_I386 : IMAGE_FILE_MACHINE_AMD64;
  if (header + sizeof other > image.size()) return false;
  std::memcpy(image.data() + header, &other, sizeof other);
  WriteFile(path, image);

  const std::string id = "{6C5B6A1F-3F0B-4C53-9D0B-615E428B70FF}";
  const auto write = [](const std::string& key, const std::string& text) {
    return RegSetKeyValueA(HKEY_LOCAL_MACHINE, ("Software\\Classes\\" + key).c_str(), nullptr, REG_SZ,
                           text.c_str(), static_cast<DWORD>(text.size() + 1)) == ERROR_SUCCESS;
  };
  return write(className + "\\CLSID", id) && write("CLSID\\" + id + "\\InprocServer32", path);
}

std::vector<std::string> Recording::Lines() const {
  std::ifstream file(path_);
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) {
    if (line.find("IServer_CheckForWarning") == line.npos) lines.push_back(line);
  }
  return lines;
}

std::vector<std::string> Recording::LinesFrom(std::size_t first) const {
  const auto lines = Lines();
  return {lines.begin() + static_cast<std::ptrdiff_t>(std::min(first, lines.size())), lines.end()};
}

std::vector<std::string> Recording::Calls(const std::string& member) const {
  std::vector<std::string> calls;
  for (const std::string& line : Lines()) {
    const std::size_t place = line.find(" " + member + " ");
    if (place != line.npos) calls.push_back(line.substr(place + member.size() + 2));
  }
  return calls;
}

bool Recording::Raise(const std::string& className, const std::string& event) {
  const HWND source = FindWindowA("HarbourlineRecordingEvents", className.c_str());
  if (!source) return false;
  COPYDATASTRUCT data{};
  data.cbData = static_cast<DWORD>(event.size());
  data.lpData = const_cast<char*>(event.data());
  SendMessageA(source, WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&data));
  return true;
}
