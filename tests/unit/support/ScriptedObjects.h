#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/LateBoundObject.h"
#include "platform/ObjectFactory.h"

namespace support {

/// Kind and value in short: "text", 5:16, 5:32, True, null, object, the fields of a record in braces, and an
/// array as its bounds and elements: [0..1]{"a", "b"}.
std::string Describe(const base::Variant& value);
/// The same, with "&" in front of one by reference.
std::string Describe(const platform::Argument& argument);

/// What a class of late-bound objects does, shared by all its objects: answers to its members, and the calls
/// that they got. A member that isn't scripted is one that the object lacks.
class Script {
 public:
  using Member = std::function<base::Variant(std::span<platform::Argument>)>;

  explicit Script(std::vector<std::string>* journal = nullptr) : journal_(journal) {}

  void Answer(const std::string& member, base::Variant value);
  void Do(const std::string& member, Member what) { members_[member] = std::move(what); }
  void Fail(const std::string& member, std::int32_t number, const std::string& text);
  void Lack(const std::string& member) { members_.erase(member); }
  /// The member may be written.
  void Accept(const std::string& member) { writable_.insert(member); }

  /// "get M", "put M = 5:32", "call M(&"text", 5:16)", in order.
  std::vector<std::string> calls;
  /// What was written last, by member.
  std::map<std::string, base::Variant> written;
  /// Objects that live at present.
  int alive = 0;
  /// The source offers no events.
  bool lacksEvents = false;

 private:
  friend class ScriptedObject;
  void Record(const std::string& call);

  std::vector<std::string>* journal_;
  std::map<std::string, Member> members_;
  std::set<std::string> writable_;
};

class ScriptedObject : public platform::LateBoundObject {
 public:
  explicit ScriptedObject(std::shared_ptr<Script> script) : script_(std::move(script)) { ++script_->alive; }
  ~ScriptedObject() override { --script_->alive; }

  base::Variant Get(std::string_view member) override;
  void Put(std::string_view member, const base::Variant& value) override;
  base::Variant Call(std::string_view member, std::span<platform::Argument> arguments) override;

  Script& GetScript() { return *script_; }

 private:
  base::Variant Run(std::string_view member, std::span<platform::Argument> arguments);

  std::shared_ptr<Script> script_;
};

/// Makes scripted objects by class name and raises their events.
class ScriptedObjects : public platform::ObjectFactory {
 public:
  explicit ScriptedObjects(std::vector<std::string>& journal) : journal_(journal) {}

  /// Makes the class known. Its objects have a title and a class name, and all other members of a plug-in
  /// whose router works, has no features and never fails.
  std::shared_ptr<Script> AddPlugIn(const std::string& className, const std::string& title);
  /// The class is no longer installed.
  void Uninstall(const std::string& className) { classes_.erase(className); }

  platform::LateBoundRef Create(std::string_view className) override;
  std::unique_ptr<platform::EventConnection> Connect(platform::LateBoundObject& source,
                                                     const platform::EventInterface& events,
                                                     platform::EventSink& sink) override;

  /// Raises an event in every connected sink.
  void Raise(std::int32_t event, std::span<base::Variant> arguments);
  std::size_t Connections() const { return sinks_.size(); }

  /// Class names that were asked for, in order.
  std::vector<std::string> created;
  /// Classes whose making gives no object and no failure.
  std::set<std::string> makesNothing;
  platform::EventInterface lastEvents;

 private:
  class Connection;

  std::vector<std::string>& journal_;
  std::map<std::string, std::shared_ptr<Script>, std::less<>> classes_;
  std::vector<platform::EventSink*> sinks_;
};

}  // namespace support
