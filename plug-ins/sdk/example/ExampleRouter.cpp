// A complete plug-in: it pretends that its router works and remembers the mappings.
#include "HarbourlinePlugIn.h"

namespace {

// Make your own with uuidgen; every plug-in needs a class id of its own.
constexpr CLSID kClassId = {0x1B1C230B, 0x8C66, 0x46A7, {0x83, 0x57, 0xEE, 0x43, 0x3C, 0x90, 0xA4, 0x79}};
constexpr wchar_t kProgId[] = L"Harbourline.Example";

class ExampleRouter : public harbourline::RouterPlugIn {
 protected:
  std::wstring ServerTitle() override { return L"Example Router"; }
  std::wstring ClassName() override { return kProgId; }
  std::wstring Version() override { return L"1.0"; }
  bool Functional() override { return true; }
  std::wstring WANIP() override { return L"192.0.2.1"; }

  harbourline::Outcome SetPortForwarding(const std::vector<harbourline::Mapping>& mappings,
                                         short localOctet) override {
    for (const harbourline::Mapping& mapping : mappings) {
      if (mapping.endPort < mapping.beginPort) return harbourline::Outcome::kNotDone;
    }
    // A real plug-in tells its router here. What this computer had before and isn't in `mappings` goes away.
    forwarded_ = mappings;
    localOctet_ = localOctet;
    return harbourline::Outcome::kDone;
  }

  std::vector<harbourline::Feature> Features() override { return {{L"How many mappings?", 1}}; }
  void ActivateFeature(const std::wstring& localAddress, short identifier) override {
    if (identifier != 1) return;
    const std::wstring text = std::to_wstring(forwarded_.size()) + L" mappings for " + localAddress;
    MessageBoxW(nullptr, text.c_str(), L"Example Router", MB_OK);
  }

  std::wstring PortForwardingDescription(long port) override {
    for (const harbourline::Mapping& mapping : forwarded_) {
      if (mapping.forwardIPAddress == localOctet_ && mapping.beginPort <= port && port <= mapping.endPort) {
        return mapping.description;
      }
    }
    return {};
  }

 private:
  std::vector<harbourline::Mapping> forwarded_;
  short localOctet_ = 0;
};

}  // namespace

HARBOURLINE_PLUG_INS({kClassId, kProgId, L"Example Router", harbourline::Make<ExampleRouter>})
