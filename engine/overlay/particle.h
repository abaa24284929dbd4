#pragma once
// Particles: Vorn_Particle records kept by a Vorn_3DParticleEmitter node and drawn as
// 20-pixel point sprites in one GL_POINTS primitive.
//   particle.cpp     rolling new particles, the update walk, the emitter's setters
//   particle_gl.cpp  the sprite draw and the emitter's texture
//
// Every value is a double: short frames gather time towards the next emission, and
// float steps would lose it.
#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "core/owned_list.h"
#include "core/script_owned.h"
#include "node/game_node.h"

namespace vorn {

class Vorn_3DParticleEmitter;

class Vorn_Particle : public ScriptOwned, public std::enable_shared_from_this<Vorn_Particle> {
 public:
  using Vec3 = std::array<double, 3>;
  using Vec4 = std::array<double, 4>;
  // Which of the rolled fields hold a value: a particle made without an emitter has
  // none of them until a setter gives one.
  enum Field : std::uint8_t {
    kPos = 1,
    kSpeed = 2,
    kAcSpeed = 4,
    kColor = 8,
    kColorSpeed = 16,
    kSize = 32,
    kSizeSpeed = 64,
    kAllFields = 127
  };

  // With an emitter every field is rolled from its ranges, in the order pos, speed,
  // acspeed, color, colorSpeed, size, sizeSpeed.
  explicit Vorn_Particle(const std::shared_ptr<Vorn_3DParticleEmitter>& emitter, double life = 100);

  void SetPosition(double x, double y, double z) {
    pos = {x, y, z};
    Set |= kPos;
  }
  void SetColor(double r = 1.0, double g = 1.0, double b = 1.0, double a = 1.0) {
    color = {r, g, b, a};
    Set |= kColor;
  }
  void SetSize(double s) {
    size = s;
    Set |= kSize;
  }
  bool IsDead() const noexcept { return life <= 0; }

  // One Euler step with the emitter's life decrease; nothing when dead or without an
  // emitter. TypeError when the particle has an emitter but a field was never set.
  void update(double delay);
  // glColor3f and glVertex3f of a live particle; runs between glBegin and glEnd.
  void draw() const;

  // The emitter, or null once it is gone (the reference is not an owner).
  std::shared_ptr<Vorn_3DParticleEmitter> GetEmitter() const { return emitter.lock(); }
  void SetEmitter(const std::shared_ptr<Vorn_3DParticleEmitter>& e);
  // Whether `e` is this particle's emitter and still alive: the emitter's walk then
  // steps the particle without taking a reference.
  bool OwnedBy(const Vorn_3DParticleEmitter* e) const noexcept { return emitterRaw == e && !emitter.expired(); }

  // The step itself, inline for the emitter's walk.
  void step(double lifeDecSpeed, double delay) {
    if (Set != kAllFields) throw_unset();
    life -= lifeDecSpeed * delay;
    for (int i = 0; i < 3; ++i) speed[i] += acspeed[i] * delay;
    for (int i = 0; i < 3; ++i) pos[i] += speed[i] * delay;
    for (int i = 0; i < 4; ++i) {
      const double c = color[i] + colorSpeed[i] * delay;
      color[i] = c < 0.0 ? 0.0 : (c > 1.0 ? 1.0 : c);
    }
    size += sizeSpeed * delay;
  }

  long holder_count() const noexcept override { return weak_from_this().use_count(); }

  Vec3 pos{};
  Vec3 speed{};
  Vec3 acspeed{};
  Vec4 color{};
  Vec4 colorSpeed{};
  double size = 0.0;
  double sizeSpeed = 0.0;
  double life = 100;
  std::uint8_t Set = 0;

 private:
  [[noreturn]] static void throw_unset();
  std::weak_ptr<Vorn_3DParticleEmitter> emitter;
  const Vorn_3DParticleEmitter* emitterRaw = nullptr;
};

using ParticleList = OwnedList<Vorn_Particle>;

class Vorn_3DParticleEmitter : public Vorn_3DGameNode {
 public:
  using Range = std::pair<double, double>;

  explicit Vorn_3DParticleEmitter(double x = 0, double y = 0, double z = 0, const Ptr& parent = nullptr);

  void CreateParticleEmitter(int particleTotal = 200, std::string particleMode = "Gravity");
  // Finds the file as textures are found (as given, the resource index, beside
  // MeshFile) and makes TextureID from it as RGBA, linear and repeating; a previous
  // TextureID is deleted first. Prints "Can't find texture:" or "Can't read texture:".
  void LoadTextureFromFile(const std::string& fileName) override;

  static double RandomAB(double a, double b);
  void SetEmitterArea(double minX = 0.0, double maxX = 0.0, double minY = 0.0, double maxY = 0.0, double minZ = 0.0,
                      double maxZ = 0.0);
  void SetEmitterSize(double minSize = 0.0, double maxSize = 1.0) { EmitterSize = {minSize, maxSize}; }
  void SetEmitterSizeSpeed(double minSpeed = 0.0, double maxSpeed = 0.0) { EmitterSizeSpeed = {minSpeed, maxSpeed}; }
  void SetEmitterDirSpeed(double minDirX = 0.0, double maxDirX = 0.0, double minDirY = 0.0, double maxDirY = 0.0,
                          double minDirZ = 0.0, double maxDirZ = 0.0);
  void SetEmitterAccSpeed_X(double mindirX = 0.0, double maxdirX = 0.0) { EmitterAccSpeed[0] = {mindirX, maxdirX}; }
  void SetEmitterAccSpeed_Y(double mindirY = 0.0, double maxdirY = 0.0) { EmitterAccSpeed[1] = {mindirY, maxdirY}; }
  void SetEmitterAccSpeed_Z(double mindirZ = 0.0, double maxdirZ = 0.0) { EmitterAccSpeed[2] = {mindirZ, maxdirZ}; }
  void SetEmitterColor(double minRed = 0.0, double maxRed = 1.0, double minGreen = 0.0, double maxGreen = 1.0,
                       double minBlue = 0.0, double maxBlue = 1.0, double minAlpha = 0.0, double maxAlpha = 1.0);
  // The defaults differ by channel: red (-0.1, 0.0), the others (-0.1, 1.0).
  void SetEmitterColorSpeed(double minRed = -0.1, double maxRed = 0.0, double minGreen = -0.1, double maxGreen = 1.0,
                            double minBlue = -0.1, double maxBlue = 1.0, double minAlpha = -0.1,
                            double maxAlpha = 1.0);
  void SetEmitterColorSpeed_R(double minRed = -0.1, double maxRed = 0.0) { EmitterColorSpeed[0] = {minRed, maxRed}; }
  void SetEmitterColorSpeed_G(double minGreen = -0.1, double maxGreen = 0.0) {
    EmitterColorSpeed[1] = {minGreen, maxGreen};
  }
  void SetEmitterColorSpeed_B(double minBlue = -0.1, double maxBlue = 0.0) {
    EmitterColorSpeed[2] = {minBlue, maxBlue};
  }
  void SetEmitterColorSpeed_A(double minAlpha = -0.1, double maxAlpha = 0.0) {
    EmitterColorSpeed[3] = {minAlpha, maxAlpha};
  }

  std::array<double, 3> GetNewParticleXYZ() const;
  double GetNewParticleSize() const { return RandomAB(EmitterSize.first, EmitterSize.second); }
  double GetNewParticleSizeSpeed() const { return RandomAB(EmitterSizeSpeed.first, EmitterSizeSpeed.second); }
  std::array<double, 3> GetNewParticleDirSpeed() const;
  std::array<double, 3> GetNewParticleAccSpeed() const;
  std::array<double, 4> GetNewParticleColor() const;
  std::array<double, 4> GetNewParticleColorSpeed() const;
  // A particle of life 100 * random appended to ParticleArray.
  void AddParticle();

  // Steps every particle, drops dead ones by index as it walks (the element after a
  // removal is skipped this frame), then emits for the gathered time. The base
  // update does not run: actions and children of an emitter stay still.
  void update(double delay) override;
  // The particles as textured point sprites of 20 pixels.
  void draw_allsubmesh() override;

  int visit_script_refs(ScriptRefVisit visit, void* context) const override;
  void clear_script_refs() override;

  std::string ParticleMode = "Gravity";
  int ParticleTotal = 500;
  int ParticleCount = 0;
  ParticleList ParticleArray;
  double EmissionRate = 100;
  std::array<Range, 3> EmitterArea{Range{0.0, 0.0}, Range{0.0, 0.0}, Range{0.0, 0.0}};
  Range EmitterSize{1.0, 2.0};
  Range EmitterSizeSpeed{0.0, 1.0};
  std::array<Range, 3> EmitterDirSpeed{Range{-0.5, 0.5}, Range{1.0, 1.0}, Range{-0.5, 0.5}};
  std::array<Range, 3> EmitterAccSpeed{Range{0.0, 0.0}, Range{0.0, -2.0}, Range{0.0, 0.0}};
  std::array<Range, 4> EmitterColor{Range{0.0, 1.0}, Range{0.0, 1.0}, Range{0.0, 1.0}, Range{0.0, 1.0}};
  std::array<Range, 4> EmitterColorSpeed{Range{0.1, 0.1}, Range{0.1, 0.1}, Range{0.1, 0.1}, Range{0.1, 0.1}};
  double EmitterLifeDecSpeed = 10.0;
  double EmitterTime = 0;
  std::optional<unsigned> TextureID;

 private:
  // How many particles the gathered time asks for, as int() of a float would give it,
  // capped by what the pool has room for (so no huge count reaches the loop).
  int EmissionCount(double want, int room) const;
};

}  // namespace vorn
