#include "ForwardingTable.h"

#include <algorithm>
#include <map>
#include <string>
#include <tuple>

namespace practice {

using harbourline::Mapping;

namespace {

struct Protocols {
  bool udp = false;
  bool tcp = false;
};

using Target = std::tuple<short, long, long>;
Target TargetOf(const Mapping& mapping) {
  return {mapping.forwardIPAddress, mapping.beginPort, mapping.endPort};
}

std::string Utf8(const std::wstring& text) {
  const int length = static_cast<int>(text.size());
  std::string bytes(static_cast<std::size_t>(length) * 3, '\0');
  const int used = WideCharToMultiByte(CP_UTF8, 0, text.data(), length, bytes.data(),
                                       static_cast<int>(bytes.size()), nullptr, nullptr);
  bytes.resize(static_cast<std::size_t>(used));
  return bytes;
}

/// Without what would break a line of the demonstration's file.
std::wstring OneLine(std::wstring text) {
  std::replace_if(
      text.begin(), text.end(), [](wchar_t c) { return c < L' ' || c == L'|'; }, L' ');
  return text;
}

}  // namespace

void ForwardingTable::Apply(const std::vector<Mapping>& request, short localOctet) {
  RemoveLocal(localOctet);
  Clear(request);
  Add(request, localOctet);
}

void ForwardingTable::RemoveLocal(short localOctet) {
  entries_.erase(std::remove_if(entries_.begin(), entries_.end(),
                                [=](const Mapping& entry) { return entry.forwardIPAddress == localOctet; }),
                 entries_.end());
}

void ForwardingTable::Clear(const std::vector<Mapping>& request) {
  std::map<Target, Protocols> cleared;
  for (const Mapping& wish : request) {
    if (!wish.clearEntry) continue;
    Protocols& protocols = cleared[TargetOf(wish)];
    protocols.udp = protocols.udp || wish.udp;
    protocols.tcp = protocols.tcp || wish.tcp;
  }
  if (cleared.empty()) return;
  const auto gone = [&](Mapping& entry) {
    const auto found = cleared.find(TargetOf(entry));
    if (found == cleared.end()) return false;
    entry.udp = entry.udp && !found->second.udp;
    entry.tcp = entry.tcp && !found->second.tcp;
    return !entry.udp && !entry.tcp;
  };
  entries_.erase(std::remove_if(entries_.begin(), entries_.end(), gone), entries_.end());
}

void ForwardingTable::Add(const std::vector<Mapping>& request, short localOctet) {
  using Foreign = std::tuple<Target, bool, bool>;
  std::map<Foreign, std::size_t> places;
  const auto keyOf = [](const Mapping& mapping) {
    return Foreign(TargetOf(mapping), mapping.udp, mapping.tcp);
  };
  for (std::size_t i = 0; i < entries_.size(); ++i) places.emplace(keyOf(entries_[i]), i);
  for (const Mapping& wish : request) {
    if (wish.clearEntry) continue;
    if (wish.forwardIPAddress == localOctet) {
      entries_.push_back(wish);
      continue;
    }
    const auto [place, isNew] = places.emplace(keyOf(wish), entries_.size());
    if (isNew) {
      entries_.push_back(wish);
    } else {
      entries_[place->second] = wish;
    }
  }
}

std::wstring ProtocolText(const Mapping& mapping) {
  if (mapping.tcp && mapping.udp) return L"TCP+UDP";
  if (mapping.tcp) return L"TCP";
  return mapping.udp ? L"UDP" : L"";
}

void WriteTableForDemonstration(const ForwardingTable& table) {
  std::wstring path(32768, L'\0');
  path.resize(
      GetEnvironmentVariableW(L"HARBOURLINE_PRACTICE_TABLE", path.data(), static_cast<DWORD>(path.size())));
  if (path.empty()) return;
  std::string content;
  for (const Mapping& entry : table.Entries()) {
    content += Utf8(OneLine(entry.profileName) + L"|" + OneLine(entry.description) + L"|" +
                    std::to_wstring(entry.beginPort) + L"-" + std::to_wstring(entry.endPort) + L"|" +
                    ProtocolText(entry) + L"|" + std::to_wstring(entry.forwardIPAddress)) +
               "\r\n";
  }
  const std::wstring draft = path + L".new";
  const HANDLE file = CreateFileW(draft.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return;
  DWORD written = 0;
  const BOOL whole = WriteFile(file, content.data(), static_cast<DWORD>(content.size()), &written, nullptr);
  CloseHandle(file);
  if (whole) MoveFileExW(draft.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING);
}

}  // namespace practice
