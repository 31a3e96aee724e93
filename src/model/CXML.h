#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/Event.h"
#include "base/TextFile.h"
#include "base/Variant.h"

/// Writes and reads one element of an exchange file: a header line with a tag and attributes, and a trailer
/// line. It knows no values: it asks its owner for them by GetValue and hands them over by SetValue.
class CXML {
 public:
  /// What a kind of element is called. All elements of a kind may share one.
  class Names {
   public:
    Names(std::string sTag, std::vector<std::string> attributeNames);

   private:
    friend class CXML;
    std::string tag_;
    std::vector<std::string> attributes_;
    // The same as they stand in the file: "<tag", "</tag>", and " name=" for each attribute.
    std::string head_;
    std::string trailer_;
    std::vector<std::string> assignments_;
  };

  /// No tag and one empty attribute name.
  CXML();
  explicit CXML(std::shared_ptr<const Names> names) : names_(std::move(names)) {}

  const std::string& sTag() const { return names_->tag_; }
  void sTag(std::string sTag);
  const std::vector<std::string>& AttributeNames() const { return names_->attributes_; }
  void AttributeNames(std::vector<std::string> attributeNames);
  /// One name alone.
  void AttributeNames(std::string sName);

  /// What the owner gives for the attribute; empty when it knows none.
  base::Variant Value(std::string_view sAttributeName) const;
  void Value(std::string_view sAttributeName, const base::Variant& vValue) const;

  void WriteHeader(base::TextFileWriter& file) const;
  void WriteTrailer(base::TextFileWriter& file) const;

  /// True when the line is a header of this tag, blanks before it aside; its attributes have then been handed
  /// over. One that can't be read ends that, raises ErrorOccured and leaves those before it as handed over.
  bool ReadHeader(std::string_view sLineIn) const;
  /// True when the line is the trailer of this tag, blanks around it aside.
  bool ReadTrailer(std::string_view sLineIn) const;

  base::Event<std::string_view, base::Variant&> GetValue;
  base::Event<std::string_view, const base::Variant&> SetValue;
  base::Event<const std::string&> ErrorOccured;

 private:
  bool ParseAttributes(std::string_view line) const;

  std::shared_ptr<const Names> names_;
};
