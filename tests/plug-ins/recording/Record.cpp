#include <array>
#include <cstdio>

#include "Recording.h"

namespace recording {

const char* const kFields[8] = {"sProfileName", "sDescription", "lBeginPort",        "lEndPort",
                                "bUDP",         "bTCP",         "iForwardIPAddress", "bClearEntry"};

long objects = 0;

namespace {

std::string KindName(VARTYPE type) {
  std::string name;
  if (type & VT_BYREF) name += "BYREF+";
  if (type & VT_ARRAY) name += "ARRAY+";
  switch (type & VT_TYPEMASK) {
    case VT_EMPTY:
      return name + "EMPTY";
    case VT_NULL:
      return name + "NULL";
    case VT_I2:
      return name + "I2";
    case VT_I4:
      return name + "I4";
    case VT_R8:
      return name + "R8";
    case VT_BSTR:
      return name + "BSTR";
    case VT_BOOL:
      return name + "BOOL";
    case VT_DISPATCH:
      return name + "DISPATCH";
    case VT_UNKNOWN:
      return name + "UNKNOWN";
    case VT_ERROR:
      return name + "ERROR";
    case VT_VARIANT:
      return name + "VARIANT";
    default:
      return name + "VT" + std::to_string(type & VT_TYPEMASK);
  }
}

std::string Quoted(BSTR text) {
  std::string quoted = "\"";
  for (const char c : text ? Narrow(text, static_cast<int>(SysStringLen(text))) : std::string()) {
    if (c == '"' || c == '\\') quoted += '\\';
    if (c >= 0 && c < ' ') {
      std::array<char, 8> code{};
      std::snprintf(code.data(), code.size(), "\\x%02X", c);
      quoted += code.data();
    } else {
      quoted += c;
    }
  }
  return quoted + "\"";
}

std::string BooleanName(VARIANT_BOOL value) {
  if (value == VARIANT_TRUE) return "True";
  return value == VARIANT_FALSE ? "False" : "(boolean of " + std::to_string(value) + ")";
}

std::string DescribeField(IDispatch* object, const char* field) {
  BSTR name = Wide(field);
  DISPID id = 0;
  HRESULT result = object->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id);
  SysFreeString(name);
  VARIANT value;
  VariantInit(&value);
  DISPPARAMS none{};
  if (SUCCEEDED(result)) {
    result = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none, &value, nullptr,
                            nullptr);
  }
  const std::string text = FAILED(result) ? "(failed " + Hex(result) + ")" : Describe(value);
  VariantClear(&value);
  return std::string(field) + "=" + text;
}

std::string DescribeRecord(IDispatch* object) {
  if (!object) return "null";
  std::string text = "{";
  for (const char* field : kFields) text += (text.size() > 1 ? "; " : "") + DescribeField(object, field);
  return text + "}";
}

std::string DescribeElement(SAFEARRAY* array, LONG index, VARTYPE type) {
  VARIANT element;
  VariantInit(&element);
  HRESULT result = S_OK;
  if (type == VT_VARIANT) {
    result = SafeArrayGetElement(array, &index, &element);
  } else {
    result = SafeArrayGetElement(array, &index, &element.lVal);
    if (SUCCEEDED(result)) element.vt = type;
  }
  std::string text = FAILED(result)              ? "(failed " + Hex(result) + ")"
                     : element.vt == VT_DISPATCH ? DescribeRecord(element.pdispVal)
                                                 : Describe(element);
  VariantClear(&element);
  return text;
}

std::string DescribeArray(SAFEARRAY* array, VARTYPE type) {
  if (!array) return " (no array)";
  if (SafeArrayGetDim(array) != 1) return " (" + std::to_string(SafeArrayGetDim(array)) + " dimensions)";
  LONG lower = 0;
  LONG upper = 0;
  SafeArrayGetLBound(array, 1, &lower);
  SafeArrayGetUBound(array, 1, &upper);
  std::string text = " [" + std::to_string(lower) + ".." + std::to_string(upper) + "]";
  for (LONG i = lower; i <= upper; ++i) text += " " + DescribeElement(array, i, type);
  return text;
}

std::string DescribeScalar(const VARIANT& value) {
  switch (value.vt) {
    case VT_BSTR:
      return " " + Quoted(value.bstrVal);
    case VT_I2:
      return " " + std::to_string(value.iVal);
    case VT_I4:
      return " " + std::to_string(value.lVal);
    case VT_R8:
      return " " + std::to_string(value.dblVal);
    case VT_BOOL:
      return " " + BooleanName(value.boolVal);
    case VT_DISPATCH:
      return value.pdispVal ? " object" : " null";
    case VT_UNKNOWN:
      return value.punkVal ? " object" : " null";
    case VT_ERROR:
      return " " + Hex(value.scode);
    default:
      return {};
  }
}

}  // namespace

std::string Describe(const VARIANT& argument) {
  const std::string kind = KindName(argument.vt);
  const auto type = static_cast<VARTYPE>(argument.vt & VT_TYPEMASK);
  const bool byReference = (argument.vt & VT_BYREF) != 0;
  if (byReference && !argument.byref) return kind + " (nowhere)";
  if (argument.vt & VT_ARRAY)
    return kind + DescribeArray(byReference ? *argument.pparray : argument.parray, type);
  if (!byReference) return kind + DescribeScalar(argument);
  if (type == VT_VARIANT) return kind + " " + Describe(*argument.pvarVal);
  VARIANT direct;
  VariantInit(&direct);
  const HRESULT result = VariantCopyInd(&direct, const_cast<VARIANT*>(&argument));
  const std::string text = FAILED(result) ? " (failed " + Hex(result) + ")" : DescribeScalar(direct);
  VariantClear(&direct);
  return kind + text;
}

void Write(const std::string& className, const std::string& line) {
  std::string path(32768, '\0');
  path.resize(GetEnvironmentVariableA("HARBOURLINE_RECORDING", path.data(), static_cast<DWORD>(path.size())));
  if (path.empty()) path = Script(className, "LogFile").value_or("");
  if (path.empty()) return;
  const HANDLE file = CreateFileA(path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                  OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return;
  const std::string text = className + " " + line + "\n";
  DWORD written = 0;
  WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
  CloseHandle(file);
}

std::string Narrow(const wchar_t* text, int length) {
  const int size = WideCharToMultiByte(CP_ACP, 0, text, length, nullptr, 0, nullptr, nullptr);
  std::string narrow(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_ACP, 0, text, length, narrow.data(), size, nullptr, nullptr);
  if (length == -1) narrow.resize(narrow.size() - 1);
  return narrow;
}

BSTR Wide(const std::string& text) {
  const int length = static_cast<int>(text.size());
  const int size = MultiByteToWideChar(CP_ACP, 0, text.data(), length, nullptr, 0);
  BSTR wide = SysAllocStringLen(nullptr, static_cast<UINT>(size));
  MultiByteToWideChar(CP_ACP, 0, text.data(), length, wide, size);
  return wide;
}

std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> parts(1);
  for (const char c : text) {
    if (c == separator) {
      parts.emplace_back();
    } else {
      parts.back() += c;
    }
  }
  return parts;
}

std::string Hex(HRESULT code) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "%08lX", static_cast<unsigned long>(code));
  return text.data();
}

}  // namespace recording
