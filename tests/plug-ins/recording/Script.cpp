#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "Recording.h"

namespace recording {
namespace {

struct Features {
  std::vector<std::string> captions;
  std::vector<SHORT> identifiers;
};

Features ScriptedFeatures(const std::string& className, const std::string& script) {
  Features features;
  for (const std::string& entry : Split(script, ';')) {
    const std::vector<std::string> parts = Split(entry + "=", '=');
    features.captions.push_back(parts[0]);
    features.identifiers.push_back(static_cast<SHORT>(std::atoi(parts[1].c_str())));
  }
  const long captions =
      ScriptNumber(className, "FeatureCaptions").value_or(static_cast<long>(features.captions.size()));
  features.captions.resize(static_cast<std::size_t>(captions), "one more");
  return features;
}

bool IsArrayOf(const VARIANT& argument, VARTYPE type) {
  return argument.vt == (VT_BYREF | VT_ARRAY | type) && argument.pparray;
}

bool Place(SAFEARRAY*& array, VARTYPE type, SAFEARRAYBOUND bound, bool redim) {
  if (redim && array) return SUCCEEDED(SafeArrayRedim(array, &bound));
  if (array && FAILED(SafeArrayDestroy(array))) return false;
  array = SafeArrayCreate(type, 1, &bound);
  return array != nullptr;
}

void OverwriteRecord(IDispatch* record) {
  for (const char* field : kFields) {
    BSTR name = Wide(field);
    DISPID id = 0;
    const HRESULT found = record->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id);
    SysFreeString(name);
    if (FAILED(found)) continue;
    VARIANT value;
    ParseValue(field[0] == 's' ? "text:changed" : field[0] == 'b' ? "bool:True" : "int16:99", value);
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS parameters{&value, &put, 1, 1};
    record->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYPUT, &parameters, nullptr, nullptr,
                   nullptr);
    VariantClear(&value);
  }
}

void OverwriteMappings(SAFEARRAY*& array) {
  LONG lower = 0;
  LONG upper = -1;
  if (array && SafeArrayGetDim(array) == 1) {
    SafeArrayGetLBound(array, 1, &lower);
    SafeArrayGetUBound(array, 1, &upper);
  }
  for (LONG i = lower; i <= upper; ++i) {
    IDispatch* record = nullptr;
    if (FAILED(SafeArrayGetElement(array, &i, &record)) || !record) continue;
    OverwriteRecord(record);
    record->Release();
  }
  constexpr LONG kOtherBound = 5;
  Place(array, VT_DISPATCH, {1, kOtherBound}, false);
}

}  // namespace

std::optional<std::string> Script(const std::string& className, const std::string& name) {
  const std::string path = "Software\\Harbourline Recording\\" + className;
  DWORD size = 0;
  if (RegGetValueA(HKEY_CURRENT_USER, path.c_str(), name.c_str(), RRF_RT_REG_SZ, nullptr, nullptr, &size) !=
      ERROR_SUCCESS) {
    return std::nullopt;
  }
  std::string text(size, '\0');
  if (RegGetValueA(HKEY_CURRENT_USER, path.c_str(), name.c_str(), RRF_RT_REG_SZ, nullptr, text.data(),
                   &size) != ERROR_SUCCESS) {
    return std::nullopt;
  }
  return std::string(text.c_str());
}

std::optional<long> ScriptNumber(const std::string& className, const std::string& name) {
  const std::optional<std::string> text = Script(className, name);
  if (!text) return std::nullopt;
  return static_cast<long>(std::strtoll(text->c_str(), nullptr, 0));
}

bool ParseValue(const std::string& text, VARIANT& value) {
  VariantInit(&value);
  const std::string kind = text.substr(0, text.find(':'));
  const std::string content = kind.size() < text.size() ? text.substr(kind.size() + 1) : std::string();
  if (kind == "text") {
    value.vt = VT_BSTR;
    value.bstrVal = Wide(content);
  } else if (kind == "int16") {
    value.vt = VT_I2;
    value.iVal = static_cast<SHORT>(std::atoi(content.c_str()));
  } else if (kind == "int32") {
    value.vt = VT_I4;
    value.lVal = std::atol(content.c_str());
  } else if (kind == "double") {
    value.vt = VT_R8;
    value.dblVal = std::atof(content.c_str());
  } else if (kind == "bool") {
    value.vt = VT_BOOL;
    value.boolVal = content == "True" ? VARIANT_TRUE : VARIANT_FALSE;
  } else if (kind == "null") {
    value.vt = VT_DISPATCH;
    value.pdispVal = nullptr;
  } else if (kind != "empty") {
    return false;
  }
  return true;
}

void Overwrite(VARIANT& argument) {
  if ((argument.vt & VT_BYREF) && !argument.byref) return;
  switch (argument.vt) {
    case VT_BYREF | VT_BSTR:
      SysFreeString(*argument.pbstrVal);
      *argument.pbstrVal = Wide("changed");
      break;
    case VT_BYREF | VT_I2:
      *argument.piVal = 99;
      break;
    case VT_BYREF | VT_I4:
      *argument.plVal = 99;
      break;
    case VT_BYREF | VT_BOOL:
      *argument.pboolVal = VARIANT_TRUE;
      break;
    case VT_BYREF | VT_ARRAY | VT_DISPATCH:
      OverwriteMappings(*argument.pparray);
      break;
    default:
      break;
  }
}

bool PutFeatures(const std::string& className, VARIANT& captions, VARIANT& identifiers) {
  const std::optional<std::string> script = Script(className, "Features");
  if (!script || !IsArrayOf(captions, VT_BSTR) || !IsArrayOf(identifiers, VT_I2)) return false;
  const Features features = ScriptedFeatures(className, *script);
  const LONG base = ScriptNumber(className, "FeatureBase").value_or(0);
  const bool redim = Script(className, "FeatureStyle") == "redim";
  if (!Place(*captions.pparray, VT_BSTR, {static_cast<ULONG>(features.captions.size()), base}, redim) ||
      !Place(*identifiers.pparray, VT_I2, {static_cast<ULONG>(features.identifiers.size()), base}, redim)) {
    return false;
  }
  LONG index = base;
  SafeArrayGetLBound(*captions.pparray, 1, &index);  // redimensioning may keep the caller's
  for (const std::string& caption : features.captions) {
    BSTR text = Wide(caption);
    SafeArrayPutElement(*captions.pparray, &index, text);
    SysFreeString(text);
    ++index;
  }
  SafeArrayGetLBound(*identifiers.pparray, 1, &index);
  for (SHORT identifier : features.identifiers) {
    SafeArrayPutElement(*identifiers.pparray, &index, &identifier);
    ++index;
  }
  return true;
}

}  // namespace recording
