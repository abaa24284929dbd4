// Particles without GL: rolling new particles from the emitter's ranges, the update
// walk with its removals, and emission over gathered time.
#include <cmath>
#include <utility>

#include "core/errors.h"
#include "core/math_util.h"
#include "overlay/particle.h"

namespace vorn {

// ---- Vorn_Particle ----

Vorn_Particle::Vorn_Particle(const std::shared_ptr<Vorn_3DParticleEmitter>& e, double life_) : life(life_) {
  SetEmitter(e);
  if (!e) return;
  pos = e->GetNewParticleXYZ();
  speed = e->GetNewParticleDirSpeed();
  acspeed = e->GetNewParticleAccSpeed();
  color = e->GetNewParticleColor();
  colorSpeed = e->GetNewParticleColorSpeed();
  size = e->GetNewParticleSize();
  sizeSpeed = e->GetNewParticleSizeSpeed();
  Set = kAllFields;
}

void Vorn_Particle::SetEmitter(const std::shared_ptr<Vorn_3DParticleEmitter>& e) {
  emitter = e;
  emitterRaw = e.get();
}

void Vorn_Particle::update(double delay) {
  if (!(life > 0)) return;
  if (const auto e = emitter.lock()) step(e->EmitterLifeDecSpeed, delay);
}

void Vorn_Particle::throw_unset() {
  throw TypeError(
      "Vorn_Particle.update: pos, speed, acspeed, color, colorSpeed, size and sizeSpeed must all be set "
      "(a particle made without an emitter has none of them)");
}

// ---- Vorn_3DParticleEmitter ----

Vorn_3DParticleEmitter::Vorn_3DParticleEmitter(double x_, double y_, double z_, const Ptr& parent_)
    : Vorn_3DGameNode(x_, y_, z_, parent_) {
  NodeType = "3DParticleEmitter";
}

void Vorn_3DParticleEmitter::CreateParticleEmitter(int particleTotal, std::string particleMode) {
  ParticleTotal = particleTotal;
  ParticleMode = std::move(particleMode);
}

double Vorn_3DParticleEmitter::RandomAB(double a, double b) { return a + (b - a) * RANDOM01(); }

void Vorn_3DParticleEmitter::SetEmitterArea(double minX, double maxX, double minY, double maxY, double minZ,
                                            double maxZ) {
  EmitterArea = {Range{minX, maxX}, Range{minY, maxY}, Range{minZ, maxZ}};
}

void Vorn_3DParticleEmitter::SetEmitterDirSpeed(double minDirX, double maxDirX, double minDirY, double maxDirY,
                                                double minDirZ, double maxDirZ) {
  EmitterDirSpeed = {Range{minDirX, maxDirX}, Range{minDirY, maxDirY}, Range{minDirZ, maxDirZ}};
}

void Vorn_3DParticleEmitter::SetEmitterColor(double minRed, double maxRed, double minGreen, double maxGreen,
                                             double minBlue, double maxBlue, double minAlpha, double maxAlpha) {
  EmitterColor = {Range{minRed, maxRed}, Range{minGreen, maxGreen}, Range{minBlue, maxBlue},
                  Range{minAlpha, maxAlpha}};
}

void Vorn_3DParticleEmitter::SetEmitterColorSpeed(double minRed, double maxRed, double minGreen, double maxGreen,
                                                  double minBlue, double maxBlue, double minAlpha,
                                                  double maxAlpha) {
  EmitterColorSpeed = {Range{minRed, maxRed}, Range{minGreen, maxGreen}, Range{minBlue, maxBlue},
                       Range{minAlpha, maxAlpha}};
}

namespace {

template <std::size_t N>
std::array<double, N> roll(const std::array<Vorn_3DParticleEmitter::Range, N>& ranges) {
  std::array<double, N> out{};
  for (std::size_t i = 0; i < N; ++i) out[i] = Vorn_3DParticleEmitter::RandomAB(ranges[i].first, ranges[i].second);
  return out;
}

}  // namespace

std::array<double, 3> Vorn_3DParticleEmitter::GetNewParticleXYZ() const {
  std::array<double, 3> p = roll(EmitterArea);
  p[0] += x;
  p[1] += y;
  p[2] += z;
  return p;
}

std::array<double, 3> Vorn_3DParticleEmitter::GetNewParticleDirSpeed() const { return roll(EmitterDirSpeed); }
std::array<double, 3> Vorn_3DParticleEmitter::GetNewParticleAccSpeed() const { return roll(EmitterAccSpeed); }
std::array<double, 4> Vorn_3DParticleEmitter::GetNewParticleColor() const { return roll(EmitterColor); }
std::array<double, 4> Vorn_3DParticleEmitter::GetNewParticleColorSpeed() const { return roll(EmitterColorSpeed); }

void Vorn_3DParticleEmitter::AddParticle() {
  const double lifeTime = 100 * RANDOM01();
  auto self = std::static_pointer_cast<Vorn_3DParticleEmitter>(shared_from_this());
  ParticleArray.push_back(std::make_shared<Vorn_Particle>(self, lifeTime));
}

int Vorn_3DParticleEmitter::EmissionCount(double want, int room) const {
  if (std::isnan(want)) throw ValueError("Vorn_3DParticleEmitter.update: cannot convert float NaN to integer");
  // int() truncates towards zero; a negative count emits nothing but still resets time.
  if (want >= static_cast<double>(room)) return room;
  if (want <= -1.0) return -1;
  return static_cast<int>(want);
}

void Vorn_3DParticleEmitter::update(double delay) {
  ParticleCount = 0;
  // The walk goes by index over a list it changes: after a removal the next particle
  // is skipped this frame, and a later removal takes the one at ParticleCount, which
  // may be a live one that was skipped. Scripts see exactly this behaviour, so it
  // stays. The size is read at every step because a release may run script code.
  for (std::size_t i = 0; i < ParticleArray.size(); ++i) {
    Vorn_Particle& p = *ParticleArray[i];
    if (p.life > 0) {
      if (p.OwnedBy(this)) {
        p.step(EmitterLifeDecSpeed, delay);
      } else {
        p.update(delay);
      }
    }
    if (!p.IsDead()) {
      ++ParticleCount;
    } else {
      ParticleArray.pop(ParticleCount);
    }
  }
  if (ParticleCount >= ParticleTotal) return;
  EmitterTime += delay;
  const int room = ParticleTotal - ParticleCount;
  const int createCount = EmissionCount(EmitterTime * EmissionRate, room);
  if (createCount == 0) return;  // the time stays gathered
  EmitterTime = 0;
  for (int k = 0; k < createCount; ++k) AddParticle();
}

int Vorn_3DParticleEmitter::visit_script_refs(ScriptRefVisit visit, void* context) const {
  if (int r = Vorn_3DGameNode::visit_script_refs(visit, context)) return r;
  return ParticleArray.visit(visit, context);
}

void Vorn_3DParticleEmitter::clear_script_refs() {
  ParticleList dropped = std::move(ParticleArray);
  ParticleArray = ParticleList();
  Vorn_3DGameNode::clear_script_refs();
}

}  // namespace vorn
