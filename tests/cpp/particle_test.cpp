// The particle walk in C++: counts that a huge, negative or NaN time would make.
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

// The walk's removals, gathered short frames, the pool limit and a particle outliving its
// emitter are the script suite's checks (test_particles.py); these are not.
TEST(ParticleEmitter, AHugeTimeIsCappedByTheRoomLeft) {
  SeedRandom(5);
  auto e = emitter();
  e->EmitterLifeDecSpeed = 0;
  e->ParticleTotal = 3;
  e->update(1e300);
  EXPECT_EQ(e->ParticleArray.size(), 3u);
  for (const auto& p : e->ParticleArray) EXPECT_TRUE(p->OwnedBy(e.get()));
}

TEST(ParticleEmitter, NegativeAndNaNTimes) {
  auto e = emitter();
  e->update(-0.5);  // int(-50) is not 0: time resets, nothing is made
  EXPECT_TRUE(e->ParticleArray.empty());
  EXPECT_EQ(e->EmitterTime, 0.0);
  EXPECT_THROW(e->update(std::numeric_limits<double>::quiet_NaN()), ValueError);
}

}  // namespace
}  // namespace vorn
