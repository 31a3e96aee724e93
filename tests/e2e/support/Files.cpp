#include "support/Files.h"

#include <windows.h>

#include <fstream>
#include <iterator>
#include <stdexcept>

std::string BuiltFile(const std::string& relative) {
  char path[MAX_PATH] = "";
  GetModuleFileNameA(nullptr, path, sizeof path);
  const std::string file = path;
  return file.substr(0, file.find_last_of('\\') + 1) + relative;
}

void RegisterPlugIn(const std::string& relative) {
  const std::string file = BuiltFile(relative);
  const HMODULE library = LoadLibraryA(file.c_str());
  if (!library) throw std::runtime_error("no plug-in " + file);
  const auto registerServer = reinterpret_cast<HRESULT(STDAPICALLTYPE*)()>(
      reinterpret_cast<void*>(GetProcAddress(library, "DllRegisterServer")));
  if (!registerServer || FAILED(registerServer())) throw std::runtime_error("can't register " + file);
  FreeLibrary(library);
}

std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) return "(no file)";
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void WriteFile(const std::string& path, const std::string& content) {
  std::ofstream(path, std::ios::binary).write(content.data(), static_cast<std::streamsize>(content.size()));
}

std::string Replaced(std::string text, const std::string& part, const std::string& instead) {
  std::size_t place = 0;
  while ((place = text.find(part, place)) != text.npos) {
    text.replace(place, part.size(), instead);
    place += instead.size();
  }
  return text;
}
