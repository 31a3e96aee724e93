#include "model/CXML.h"

#include <utility>

#include "base/Conversions.h"
#include "base/Error.h"

namespace {

/// Positions on a line are 16-bit numbers.
constexpr std::size_t kLastPosition = 32767;

void WriteQuoted(base::TextFileWriter& file, std::string_view text) {
  file.Write("\"");
  for (std::size_t quote = text.find('"'); quote != text.npos; quote = text.find('"')) {
    file.Write(text.substr(0, quote));
    file.Write("'");
    text.remove_prefix(quote + 1);
  }
  file.Write(text);
  file.Write("\"");
}

/// The value of a token that stands without quotes.
base::Variant TokenValue(std::string_view token) {
  if (base::IsNumeric(token)) return base::ToInt32(token);
  return base::ToBoolean(token);
}

}  // namespace

CXML::Names::Names(std::string sTag, std::vector<std::string> attributeNames)
    : tag_(std::move(sTag)),
      attributes_(std::move(attributeNames)),
      head_("<" + tag_),
      trailer_("</" + tag_ + ">") {
  assignments_.reserve(attributes_.size());
  for (const std::string& name : attributes_) assignments_.push_back(" " + name + "=");
}

CXML::CXML() {
  static const auto none = std::make_shared<const Names>("", std::vector<std::string>{""});
  names_ = none;
}

void CXML::sTag(std::string sTag) {
  names_ = std::make_shared<const Names>(std::move(sTag), names_->attributes_);
}

void CXML::AttributeNames(std::vector<std::string> attributeNames) {
  names_ = std::make_shared<const Names>(names_->tag_, std::move(attributeNames));
}

void CXML::AttributeNames(std::string sName) {
  AttributeNames(std::vector<std::string>{std::move(sName)});
}

base::Variant CXML::Value(std::string_view sAttributeName) const {
  base::Variant value;
  GetValue.Raise(sAttributeName, value);
  return value;
}

void CXML::Value(std::string_view sAttributeName, const base::Variant& vValue) const {
  SetValue.Raise(sAttributeName, vValue);
}

void CXML::WriteHeader(base::TextFileWriter& file) const {
  file.Write(names_->head_);
  for (std::size_t i = 0; i < names_->attributes_.size(); ++i) {
    file.Write(names_->assignments_[i]);
    const base::Variant value = Value(names_->attributes_[i]);
    if (const auto* const text = std::get_if<std::string>(&value.Get())) {
      WriteQuoted(file, *text);
    } else if (const auto* const number = std::get_if<std::int32_t>(&value.Get())) {
      file.WriteNumber(*number);
    } else if (const auto* const octet = std::get_if<std::int16_t>(&value.Get())) {
      file.WriteNumber(*octet);
    } else {
      file.Write(base::ToText(value));
    }
  }
  file.WriteLine(">");
}

void CXML::WriteTrailer(base::TextFileWriter& file) const {
  file.WriteLine(names_->trailer_);
}

bool CXML::ReadHeader(std::string_view sLineIn) const {
  const std::string_view line = base::TrimLeft(sLineIn);
  const std::size_t length = names_->head_.size();
  if (length >= line.size()) return false;
  if ((line[length] != '>' && line[length] != ' ') || !line.starts_with(names_->head_)) return false;
  bool parsed = false;
  try {
    parsed = ParseAttributes(line);
  } catch (const base::Error&) {
    // A token or a value that can't be converted, here or by the owner.
  }
  if (!parsed) ErrorOccured.Raise("Unable to parse file");
  return true;
}

bool CXML::ReadTrailer(std::string_view sLineIn) const {
  return base::Trim(sLineIn) == names_->trailer_;
}

bool CXML::ParseAttributes(std::string_view line) const {
  // What lies beyond the last position can't be reached, and so is as good as missing.
  const bool isCut = line.size() > kLastPosition;
  std::string_view rest = line.substr(0, kLastPosition);
  if (rest.size() < names_->head_.size()) return false;
  rest.remove_prefix(names_->head_.size());
  for (;;) {
    if (rest.starts_with('>')) return true;
    if (rest.starts_with(' ')) {
      rest.remove_prefix(1);
      continue;
    }
    const std::size_t equals = rest.find('=');
    if (equals == rest.npos) return false;
    const std::string_view name = rest.substr(0, equals);
    rest.remove_prefix(equals + 1);

    if (rest.starts_with('"')) {
      const std::size_t quote = rest.find('"', 1);
      if (quote == rest.npos) return false;
      Value(name, rest.substr(1, quote - 1));
      rest.remove_prefix(quote + 1);
      continue;
    }

    std::string_view token;
    if (const std::size_t blank = rest.find(' ', 1); blank != rest.npos) {
      token = rest.substr(0, blank);
      rest.remove_prefix(blank + 1);
    } else {
      if (isCut || rest.empty()) return false;
      token = rest.substr(0, rest.size() - 1);
      rest.remove_prefix(rest.size() - 1);
    }
    Value(name, TokenValue(token));
  }
}
