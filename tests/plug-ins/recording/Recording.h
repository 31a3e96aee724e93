#pragma once

// The recording plug-in: a witness that writes down every call it gets, and answers as a test scripts it. It
// is made of the Windows API alone, so that it shares no error with the program or the plug-in kit.
//
// Classes: "Harbourline.Recording", "Harbourline.RecordingB", "Harbourline.RecordingC".
//
// Script: values under HKEY_CURRENT_USER\Software\Harbourline Recording\<class>, all REG_SZ, read at each
// call. A value that says "any" counts by being there.
//   Result_<member>    the result: "text:abc", "int16:5", "int32:70000", "double:0.5", "bool:True",
//                      "bool:False", "empty", "null" (no object)
//   Fail_<member>      the member raises an error with this text and the code 0x80040201
//   FailCode_<member>  the code of that error instead; up to 65535 it goes as the short code, as some
//                      languages do
//   Break_<member>     the call fails with this COM error, without an exception
//   Missing_<member>   any: the object has no such member
//   Slow_<member>      the call takes so many milliseconds
//   Loop_<member>      the call runs a message loop of its own for so many milliseconds
//   From_<member>      the call, counted from 1, from which on these hold for the member; all without it
//   ChangeArguments    any: arguments by reference are overwritten: "changed", 99, True; the records of a
//                      mapping array too, and then the array itself by one with the bounds 5 to 5
//   Features           "Caption=5;Another=6" for IServer_GetFeatures; without it the answer is False
//   FeatureBase        lower bound of the two arrays that IServer_GetFeatures leaves; 0 without it
//   FeatureCaptions    how many captions to leave, when that isn't the number of features
//   FeatureStyle       "redim": the caller's arrays are redimensioned and filled; else new ones take their
//                      place
//   RecordLookups      any: look-ups of names are recorded too
//   EventSource        what IServer_EventHandler hands out, decided at its first read: "other" has its events
//                      on an interface of its own with type information, "untyped" the same without type
//                      information, "none" has no events at all; else a source as the contract wants it
//   EventStyle         how events pass their arguments: "byref" all by reference, "variant" all wrapped in a
//                      VARIANT; else as the contract says
//   KeepSinks          any: the source goes on raising events to a sink that has unadvised
//   Raise_<member>     events to raise from inside the member's call: texts as below with ";" between them
//   RaiseCount         how often each event is raised; 1 without it
//   LogFile            the record's file when the environment names none
//
// Result_, Fail_, Break_, Slow_ and Loop_ with "_PUT" behind the member hold for writes of a property only,
// and go before those without.
//
// Record: the file that the environment variable HARBOURLINE_RECORDING names; one line a call, written at
// once:
//   <class> <member> <GET|METHOD+GET|PUT> (<argument>, ...)
// An argument is its kind, then its value: BSTR "x", BYREF+I2 34, BYREF+ARRAY+DISPATCH [0..1] {fields}
// {fields}, [10..10] null. A record's fields are read by name: {sProfileName=BSTR "x"; ...}. In texts \"
// \\ and \xNN stand for quotes, backslashes and control characters. A write without COM's name for its value
// is told as PUT-UNNAMED, any other call with named arguments by -NAMED behind its flags. Other lines:
//   <class> created | released | advised | unadvised
//   <class> lookup <member> <locale> -> found|missing
//   <class> source released with <n> sinks        a listener forgot to unadvise
//   <class> raised <event> [x <count>] -> <code> ["<text>"] [<answers>]      or -> nobody
//
// Events: the object's event source is found by a window of the class "HarbourlineRecordingEvents" whose
// title is the class. It takes WM_COPYDATA with one of these texts and raises the event; the message's result
// is true for a text that it understands:
//   Error|message|number
//   IdentifyPort|port
//   Log|type|source|source port|destination|destination port|miscellaneous
//   Raw|event number|value|value...      values as in Result_<member>

#include <windows.h>

#include <oleauto.h>

#include <optional>
#include <string>
#include <vector>

namespace recording {

/// Appends the line to the record of the class.
void Write(const std::string& className, const std::string& line);
/// The scripted value for the class; nothing without one.
std::optional<std::string> Script(const std::string& className, const std::string& name);
/// The scripted number, decimal or with 0x.
std::optional<long> ScriptNumber(const std::string& className, const std::string& name);

std::string Narrow(const wchar_t* text, int length = -1);
BSTR Wide(const std::string& text);
std::vector<std::string> Split(const std::string& text, char separator);
/// Eight hexadecimal digits.
std::string Hex(HRESULT code);

/// Kind and value of an argument.
std::string Describe(const VARIANT& argument);
/// The names of the fields of a mapping record.
extern const char* const kFields[8];

/// What a scripted value says; false when the text is none.
bool ParseValue(const std::string& text, VARIANT& value);

/// Puts "changed", 99 or True where the argument points.
void Overwrite(VARIANT& argument);
/// Answers IServer_GetFeatures as scripted; false when there is nothing to put or no place for it.
bool PutFeatures(const std::string& className, VARIANT& captions, VARIANT& identifiers);

/// The object that raises the plug-in's events.
class EventRaiser {
 public:
  virtual ~EventRaiser() = default;
  /// The object to hand out, not counted.
  virtual IDispatch* Object() = 0;
  /// Raises the event that the text asks for; false when the text is none.
  virtual bool Raise(const std::string& request) = 0;
};
/// Counted like any COM object; made with one reference, which Object()->Release gives back.
EventRaiser* MakeEventRaiser(const std::string& className);

/// The plug-in itself, made with one reference.
IDispatch* MakePlugIn(const std::string& className);

/// Objects and locks that keep the DLL in memory.
extern long objects;
HMODULE ThisModule();

}  // namespace recording
