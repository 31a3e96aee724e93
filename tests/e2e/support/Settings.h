#pragma once

#include <initializer_list>
#include <map>
#include <optional>
#include <string>
#include <utility>

/// The program's stored settings, read and written by the system's own functions and none of the program's.
namespace settings {

inline constexpr char kSection[] = "Software\\Harbourline\\RouterSection";

using Values = std::map<std::string, std::string>;

/// Takes the program's whole key away.
void Clear();
void Write(const std::string& name, const std::string& value);
void Write(std::initializer_list<std::pair<const char*, const char*>> values);
/// Nothing for a missing value; a value that isn't text comes back as "(not text)".
std::optional<std::string> Read(const std::string& name);
Values All();

/// The command that starts the program at logon; nothing when it doesn't.
std::optional<std::string> AutoStart();

/// A stored profile with one mapping to this computer, TCP and UDP; `number` counts from 1.
void WriteProfile(int number, const std::string& name, int port, bool enabled, bool autoActivate = false);

}  // namespace settings
