// The particle emitter factory: construct, CreateParticleEmitter with its defaults,
// OnLoad; an emitter has no FX (it draws in fixed function), and a root emitter joins
// ObjectArray_3D.
#include "overlay/particle.h"
#include "scene/scene.h"

namespace vorn {

NodeScene::NodePtr Vorn_3Dcene::CreateParticleEmitter(double x, double y, double z, const NodePtr& parent) {
  auto emitter = MakeNode<Vorn_3DParticleEmitter>(x, y, z, parent);
  emitter->CreateParticleEmitter();
  emitter->OnLoad(shared_from_this());
  if (!parent) ObjectArray_3D.push_back(emitter);
  return emitter;
}

}  // namespace vorn
