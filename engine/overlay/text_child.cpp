// The carrier node of a text below a node.
#include "overlay/text_child.h"

#include "core/errors.h"

namespace vorn {

Vorn_TextChild::Vorn_TextChild(std::shared_ptr<Vorn_Text> text) : Text(std::move(text)) { NodeType = "2DText"; }

std::shared_ptr<Vorn_TextChild> Vorn_TextChild::Of(const std::shared_ptr<Vorn_Text>& text) {
  if (!text) throw TypeError("Vorn_3DGameNode.AddChild: expected a node or a Vorn_Text, not None");
  if (auto existing = std::static_pointer_cast<Vorn_TextChild>(text->carrier.lock())) return existing;
  auto carrier = MakeNode<Vorn_TextChild>(text);
  text->carrier = carrier;
  return carrier;
}

std::shared_ptr<Vorn_Text> Vorn_TextChild::TextOf(const Vorn_3DGameNode* child) noexcept {
  const auto* carrier = dynamic_cast<const Vorn_TextChild*>(child);
  return carrier ? carrier->Text.ptr() : nullptr;
}

void Vorn_TextChild::update(double delay) {
  if (Text) Text->update(delay);
}

void Vorn_TextChild::draw(double /*rx*/, double /*ry*/, double /*rz*/) {
  if (IsVisible() && Text) Text->draw();
}

int Vorn_TextChild::visit_script_refs(ScriptRefVisit visit, void* context) const {
  const int r = Vorn_3DGameNode::visit_script_refs(visit, context);
  return r != 0 ? r : Text.visit(visit, context);
}

void Vorn_TextChild::clear_script_refs() {
  Ref<Vorn_Text> text = std::move(Text);
  Vorn_3DGameNode::clear_script_refs();
}

void AddTextChild(Vorn_3DGameNode& parent, const std::shared_ptr<Vorn_Text>& text) {
  parent.AddChild(Vorn_TextChild::Of(text));
}

}  // namespace vorn
