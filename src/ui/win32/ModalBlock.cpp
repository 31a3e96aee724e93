#include "ui/win32/ModalBlock.h"

#include "ui/Form.h"
#include "ui/win32/FormPeer.h"

namespace ui::win32 {

ModalBlock::ModalBlock(const Form* free) {
  for (const Form* form : Form::LoadedForms()) {
    if (form != free && form->GetPeer()) static_cast<FormPeer*>(form->GetPeer())->Block(*this);
  }
}

ModalBlock::~ModalBlock() {
  for (const Form* form : Form::LoadedForms()) {
    if (form->GetPeer()) static_cast<FormPeer*>(form->GetPeer())->Unblock(*this);
  }
}

}  // namespace ui::win32
