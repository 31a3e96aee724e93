#include "support/ScriptedObjects.h"

#include "base/Conversions.h"
#include "base/Error.h"

namespace support {
namespace {

template <typename... Handlers>
struct Overloaded : Handlers... {
  using Handlers::operator()...;
};
template <typename... Handlers>
Overloaded(Handlers...) -> Overloaded<Handlers...>;

std::string DescribeObject(const base::ObjectRef& object) {
  if (!object) return "null";
  const auto* record = dynamic_cast<const base::Record*>(object.get());
  if (!record) return "object";
  std::string text = "{";
  for (std::size_t i = 0; i < record->PropertyNames().size(); ++i) {
    if (i > 0) text += ", ";
    text += Describe(record->Property(i));
  }
  return text + "}";
}

std::string DescribeArray(const base::ArrayRef& array) {
  if (!array) return "[erased]";
  std::string text = "[" + base::ToText(array->lowerBound) + ".." + base::ToText(array->UpperBound()) + "]{";
  for (std::size_t i = 0; i < array->elements.size(); ++i) {
    if (i > 0) text += ", ";
    text += Describe(array->elements[i]);
  }
  return text + "}";
}

}  // namespace

std::string Describe(const base::Variant& value) {
  return std::visit(Overloaded{
                        [](std::monostate) { return std::string("empty"); },
                        [](const std::string& text) { return "\"" + text + "\""; },
                        [](std::int16_t number) { return base::ToText(number) + ":16"; },
                        [](std::int32_t number) { return base::ToText(number) + ":32"; },
                        [](double number) { return base::ToText(number) + ":double"; },
                        [](bool flag) { return base::ToText(flag); },
                        [](const base::ObjectRef& object) { return DescribeObject(object); },
                        [](const base::ArrayRef& array) { return DescribeArray(array); },
                    },
                    value.Get());
}

std::string Describe(const platform::Argument& argument) {
  return (argument.byReference ? "&" : "") + Describe(argument.value);
}

void Script::Answer(const std::string& member, base::Variant value) {
  members_[member] = [value = std::move(value)](std::span<platform::Argument>) { return value; };
}

void Script::Fail(const std::string& member, std::int32_t number, const std::string& text) {
  members_[member] = [number, text](std::span<platform::Argument>) -> base::Variant {
    throw base::Error(number, text);
  };
}

void Script::Record(const std::string& call) {
  calls.push_back(call);
  if (journal_) journal_->push_back(call);
}

base::Variant ScriptedObject::Run(std::string_view member, std::span<platform::Argument> arguments) {
  const auto found = script_->members_.find(std::string(member));
  if (found == script_->members_.end()) {
    throw base::Error(base::ErrorNumber::kMemberNotFound, "Unknown name: " + std::string(member));
  }
  return found->second(arguments);
}

base::Variant ScriptedObject::Get(std::string_view member) {
  script_->Record("get " + std::string(member));
  return Run(member, {});
}

void ScriptedObject::Put(std::string_view member, const base::Variant& value) {
  script_->Record("put " + std::string(member) + " = " + Describe(value));
  if (!script_->writable_.contains(std::string(member))) {
    throw base::Error(base::ErrorNumber::kMemberNotFound, "Unknown name: " + std::string(member));
  }
  script_->written[std::string(member)] = value;
}

base::Variant ScriptedObject::Call(std::string_view member, std::span<platform::Argument> arguments) {
  std::string call = "call " + std::string(member) + "(";
  for (std::size_t i = 0; i < arguments.size(); ++i) call += (i > 0 ? ", " : "") + Describe(arguments[i]);
  script_->Record(call + ")");
  return Run(member, arguments);
}

class ScriptedObjects::Connection : public platform::EventConnection {
 public:
  Connection(ScriptedObjects& objects, platform::EventSink& sink) : objects_(objects), sink_(&sink) {}
  ~Connection() override { std::erase(objects_.sinks_, sink_); }

 private:
  ScriptedObjects& objects_;
  platform::EventSink* sink_;
};

std::shared_ptr<Script> ScriptedObjects::AddPlugIn(const std::string& className, const std::string& title) {
  auto script = std::make_shared<Script>(&journal_);
  script->Answer("IServer_ServerTitle", title);
  script->Answer("IServer_ClassName", className);
  script->Answer("IServer_Version", "1.0");
  script->Answer("IServer_Functional", true);
  script->Answer("IServer_EnableLog", false);
  script->Accept("IServer_EnableLog");
  script->Accept("IServer_DMZ");
  script->Answer("IServer_WANIP", "203.0.113.9");
  script->Answer("IServer_EventHandler", base::ObjectRef());
  for (const char* member : {"IServer_Configure", "IServer_CheckForWarning", "IServer_SetLogging",
                             "IServer_SetPortForwarding", "IServer_GetFeatures", "IServer_ActivateFeaure"}) {
    script->Answer(member, false);
  }
  script->Answer("IServer_GetPortForwardingDescription", "");
  script->Answer("IServer_ApplicationExiting", {});
  script->Answer("IServer_SaveSettings", {});
  classes_[className] = script;
  return script;
}

platform::LateBoundRef ScriptedObjects::Create(std::string_view className) {
  created.emplace_back(className);
  if (makesNothing.contains(std::string(className))) return nullptr;
  const auto script = classes_.find(className);
  if (script == classes_.end()) {
    throw base::Error(base::ErrorNumber::kCannotCreateObject, "Can't create " + std::string(className));
  }
  return std::make_shared<ScriptedObject>(script->second);
}

std::unique_ptr<platform::EventConnection> ScriptedObjects::Connect(platform::LateBoundObject& source,
                                                                    const platform::EventInterface& events,
                                                                    platform::EventSink& sink) {
  if (dynamic_cast<ScriptedObject&>(source).GetScript().lacksEvents) {
    throw base::Error(base::ErrorNumber::kInvalidCall, "Object does not source automation events");
  }
  lastEvents = events;
  sinks_.push_back(&sink);
  return std::make_unique<Connection>(*this, sink);
}

void ScriptedObjects::Raise(std::int32_t event, std::span<base::Variant> arguments) {
  const std::vector<platform::EventSink*> sinks = sinks_;
  for (platform::EventSink* sink : sinks) sink->OnEvent(event, arguments);
}

}  // namespace support
