// The actions that move, scale and turn their target.
#include "core/actions.h"

namespace vorn {

void MoveToAction::Run() {
  const std::shared_ptr<ActionTarget> target = targetNode.lock();
  if (!target) return;
  srcPostion = target->GetWorldXYZ();
  GAction::Run();
}

void MoveToAction::update(double delay) {
  const std::shared_ptr<ActionTarget> target = advance(delay);
  if (!target) return;
  const double progress = progress_of(runtime, duration);
  if (progress >= 1.0) {
    target->SetXYZ(dstPostion.x, dstPostion.y, dstPostion.z);
    over = true;
  } else {
    const Vector3 currPosition = srcPostion.lerp(dstPostion, progress);
    target->SetXYZ(currPosition.x, currPosition.y, currPosition.z);
  }
}

void MoveByAction::Run() {
  const std::shared_ptr<ActionTarget> target = targetNode.lock();
  if (!target) return;
  srcPostion = target->GetWorldXYZ();
  GAction::Run();
}

void MoveByAction::update(double delay) {
  const std::shared_ptr<ActionTarget> target = advance(delay);
  if (!target) return;
  const double progress = progress_of(runtime, duration);
  if (progress >= 1.0) {
    const Vector3 end = srcPostion + dstPostion;
    target->SetXYZ(end.x, end.y, end.z);
    over = true;
  } else {
    const Vector3 currPosition = srcPostion + dstPostion * progress;
    target->SetXYZ(currPosition.x, currPosition.y, currPosition.z);
  }
}

void ScaleToAction::Run() {
  const std::shared_ptr<ActionTarget> target = targetNode.lock();
  if (!target) return;
  srcScale = Vector2(target->GetSX(), target->GetSY());
  GAction::Run();
}

void ScaleToAction::update(double delay) {
  const std::shared_ptr<ActionTarget> target = advance(delay);
  if (!target) return;
  const double progress = progress_of(runtime, duration);
  if (progress >= 1.0) {
    target->SetSXY(dstScale.x, dstScale.y);
    over = true;
  } else {
    const Vector2 currScale = srcScale.lerp(dstScale, progress);
    target->SetSXY(currScale.x, currScale.y);
  }
}

void ScaleByAction::Run() {
  const std::shared_ptr<ActionTarget> target = targetNode.lock();
  if (!target) return;
  srcScale = Vector2(target->GetSX(), target->GetSY());
  GAction::Run();
}

void ScaleByAction::update(double delay) {
  const std::shared_ptr<ActionTarget> target = advance(delay);
  if (!target) return;
  const double progress = progress_of(runtime, duration);
  if (progress >= 1.0) {
    const Vector2 end = srcScale + dstScale;
    target->SetSXY(end.x, end.y);
    over = true;
  } else {
    const Vector2 currScale = srcScale + dstScale * progress;
    target->SetSXY(currScale.x, currScale.y);
  }
}

void RotateToAction::Run() {
  const std::shared_ptr<ActionTarget> target = targetNode.lock();
  if (!target) return;
  srcAngle = target->GetAngle();
  GAction::Run();
}

void RotateToAction::update(double delay) {
  const std::shared_ptr<ActionTarget> target = advance(delay);
  if (!target) return;
  const double progress = progress_of(runtime, duration);
  if (progress >= 1.0) {
    target->SetAngle(dstAngle);
    over = true;
  } else {
    target->SetAngle(srcAngle + (dstAngle - srcAngle) * progress);
  }
}

void RotateByAction::Run() {
  const std::shared_ptr<ActionTarget> target = targetNode.lock();
  if (!target) return;
  srcAngle = target->GetAngle();
  GAction::Run();
}

void RotateByAction::update(double delay) {
  const std::shared_ptr<ActionTarget> target = advance(delay);
  if (!target) return;
  const double progress = progress_of(runtime, duration);
  if (progress >= 1.0) {
    target->SetAngle(srcAngle + dstAngle);
    over = true;
  } else {
    target->SetAngle(srcAngle + dstAngle * progress);
  }
}

}  // namespace vorn
