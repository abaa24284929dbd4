// The particle walk in C++: removals by index, emission over gathered time and at the
// pool limit, and counts that a float time of NaN or infinity would make.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>

#include "core/errors.h"
#include "core/math_util.h"
#include "overlay/particle.h"

namespace vorn {
namespace {

std::shared_ptr<Vorn_3DParticleEmitter> emitter() { return std::make_shared<Vorn_3DParticleEmitter>(); }

TEST(ParticleEmitter, WalkRemovesByIndexAndSkipsTheNext) {
  auto e = emitter();
  e->EmissionRate = 0;
  for (double life : {0.5, 0.5, 60.0, 0.5}) e->ParticleArray.push_back(std::make_shared<Vorn_Particle>(e, life));
  const auto second = e->ParticleArray[1], last = e->ParticleArray[3];
  e->update(0.1);
  EXPECT_EQ(e->ParticleCount, 1);
  ASSERT_EQ(e->ParticleArray.size(), 2u);
  EXPECT_EQ(e->ParticleArray[0], second);
  EXPECT_EQ(e->ParticleArray[1], last);
  EXPECT_DOUBLE_EQ(second->life, 0.5);  // skipped this frame
}

TEST(ParticleEmitter, EmissionGathersTimeAndStopsAtTheLimit) {
  SeedRandom(5);
  auto e = emitter();
  e->update(0.005);
  EXPECT_TRUE(e->ParticleArray.empty());
  e->update(0.005);
  EXPECT_EQ(e->ParticleArray.size(), 1u);
  EXPECT_EQ(e->EmitterTime, 0.0);
  e->EmitterLifeDecSpeed = 0;
  e->ParticleTotal = 3;
  e->update(1e300);  // a huge count is capped by the room left
  EXPECT_EQ(e->ParticleArray.size(), 3u);
  e->update(0.5);
  EXPECT_EQ(e->EmitterTime, 0.0);
  for (const auto& p : e->ParticleArray) {
    EXPECT_TRUE(p->OwnedBy(e.get()));
  }
}

TEST(ParticleEmitter, NegativeAndNaNTimes) {
  auto e = emitter();
  e->update(-0.5);  // int(-50) is not 0: time resets, nothing is made
  EXPECT_TRUE(e->ParticleArray.empty());
  EXPECT_EQ(e->EmitterTime, 0.0);
  EXPECT_THROW(e->update(std::numeric_limits<double>::quiet_NaN()), ValueError);
}

TEST(ParticleEmitter, ParticleOfADeadEmitterStaysStill) {
  auto e = emitter();
  auto p = std::make_shared<Vorn_Particle>(e, 10.0);
  const double y = p->pos[1];
  e.reset();
  p->update(1.0);
  EXPECT_EQ(p->life, 10.0);
  EXPECT_EQ(p->pos[1], y);
  EXPECT_EQ(p->GetEmitter(), nullptr);
}

}  // namespace
}  // namespace vorn
