#pragma once
// A Vorn_Text hung below a node (a preview tile's label). A node's children are nodes,
// so the text rides in a small carrier node: the carrier draws the text right after
// its parent's own draw and adds nothing else (no batch, no axis, no pick), and the
// binding shows scripts the text itself wherever the carrier would appear. One text
// has at most one carrier, so adding it twice, or removing it, finds the same child.
#include <memory>

#include "node/game_node.h"
#include "overlay/text.h"

namespace vorn {

class Vorn_TextChild : public Vorn_3DGameNode {
 public:
  explicit Vorn_TextChild(std::shared_ptr<Vorn_Text> text);

  // The carrier of a text, made on first need.
  static std::shared_ptr<Vorn_TextChild> Of(const std::shared_ptr<Vorn_Text>& text);
  // The text a child carries, or nullptr for an ordinary node.
  static std::shared_ptr<Vorn_Text> TextOf(const Vorn_3DGameNode* child) noexcept;

  void update(double delay) override;
  void draw(double rx = 0, double ry = 0, double rz = 0) override;
  // A label has no surface and no FX of its own.
  void ApplyFX(int /*VN_FXID*/, bool /*IncludeChildren*/ = false) override {}

  int visit_script_refs(ScriptRefVisit visit, void* context) const override;
  void clear_script_refs() override;

  Ref<Vorn_Text> Text;
};

// Appends text to parent's children, the way AddChild appends a node.
void AddTextChild(Vorn_3DGameNode& parent, const std::shared_ptr<Vorn_Text>& text);

}  // namespace vorn
