// The node draw against raw GL doing the same work: 1,000 nodes with one indexed
// FX_DIFFUSE quad each. The raw loop issues the calls the engine's draw issues for such
// a node (matrix push and pop, program switch, the program's uniforms, texture enable,
// polygon and cull state, buffer binds, interleaved arrays, the draw, the unbinds), with
// locations and matrices prepared beforehand. Needs a display (Xvfb is fine).
#include <benchmark/benchmark.h>

#include <array>
#include <cstdio>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "app/globals.h"
#include "core/console.h"
#include "core/gl_api.h"
#include "node/game_node.h"
#include "node/node_scene.h"
#include "shader/fx_3d.h"
#include "shader/fx_manage.h"

namespace {

using vorn::Vorn_3DGameNode;

constexpr int kNodes = 1000;
constexpr int kWidth = 320, kHeight = 240;

class BenchScene : public vorn::NodeScene {
 public:
  int GenNewGameNodeID() override { return ++ids; }
  double Get3DTerrainY(double, double) override { return 0.0; }
  std::array<double, 3> GetAmbientColor() const override { return {0.9, 0.9, 0.9}; }
  std::array<double, 3> GetSunLightDir() const override { return {0.0, 0.0, -1.0}; }
  void AddBatchCount() override { ++batches; }
  int ids = 0;
  long batches = 0;
};

std::shared_ptr<BenchScene> scene;
std::vector<std::shared_ptr<Vorn_3DGameNode>> nodes;

void BuildNodes() {
  scene = std::make_shared<BenchScene>();
  auto quiet = vorn::console::set_sink([](std::string_view) {});
  for (int i = 0; i < kNodes; ++i) {
    auto n = vorn::MakeNode<Vorn_3DGameNode>(4.0 + (i % 40) * 7.5, 4.0 + (i / 40) * 9.0, 0.0);
    n->OnLoad(scene);
    const int s = n->CreateSubMesh("quad");
    n->PushQuadVertex_Postion(s, std::array<double, 12>{0, 0, 0, 4, 0, 0, 4, 4, 0, 0, 4, 0});
    n->PushQuadVertex_Normal(s, std::array<double, 12>{0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1});
    n->PushTriangleVIndex(s, 0, 1, 2);
    n->PushTriangleVIndex(s, 0, 2, 3);
    n->SetSubMeshColor(s, 0.2 + 0.0005 * i, 0.6, 0.9);
    n->BuildVBO();
    n->ApplyFX(vorn::Vorn_3DFX::FX_DIFFUSE);
    n->update(0);
    nodes.push_back(std::move(n));
  }
  vorn::console::set_sink(quiet);
}

void BM_EngineDraw(benchmark::State& state) {
  for (auto _ : state) {
    for (const auto& n : nodes) n->draw();
    glFinish();
  }
  state.SetItemsProcessed(state.iterations() * kNodes);
}
BENCHMARK(BM_EngineDraw)->Unit(benchmark::kMicrosecond);

// What the raw loop needs of each node, prepared once.
struct RawNode {
  std::array<float, 16> model;
  std::array<float, 4> colour;
  GLuint vbo, ibo;
  GLsizei count;
};

void BM_RawGL(benchmark::State& state) {
  const GLuint program = *vorn::FXManagerInstance->GetShader(vorn::Vorn_3DFX::FX_DIFFUSE);
  const GLint uModel = glGetUniformLocation(program, "uModelMatrix");
  const GLint uColour = glGetUniformLocation(program, "uSubmeshColor");
  const GLint uAmbient = glGetUniformLocation(program, "uAmbientColor");
  const GLint uSun = glGetUniformLocation(program, "uSunLight");
  std::vector<RawNode> raw;
  for (const auto& n : nodes) {
    const auto c = n->GetSubMeshColor(0);
    raw.push_back({n->GetWorldMatrix().FlattenFloat(),
                   {float(c[0]), float(c[1]), float(c[2]), float(c[3])},
                   n->VVBOArray.at(0)->gl_name(),
                   n->IVBOArray.at(0)->gl_name(),
                   GLsizei(n->SubMeshShapeCount.at(0))});
  }
  const float ambient[3] = {0.9f, 0.9f, 0.9f};
  const float sun[6] = {0, 0, -1, 1, 1, 1};
  for (auto _ : state) {
    for (const RawNode& r : raw) {
      glPushMatrix();
      glUseProgram(program);
      glUniformMatrix4fv(uModel, 1, GL_FALSE, r.model.data());
      glUniform4fv(uColour, 1, r.colour.data());
      glUniform3fv(uAmbient, 1, ambient);
      glUniform3fv(uSun, 2, sun);
      glEnable(GL_TEXTURE_2D);
      glPolygonMode(GL_FRONT, GL_FILL);
      glPolygonMode(GL_BACK, GL_FILL);
      glDisable(GL_CULL_FACE);
      glBindBuffer(GL_ARRAY_BUFFER, r.vbo);
      glInterleavedArrays(GL_N3F_V3F, 0, nullptr);
      glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, r.ibo);
      glDrawElements(GL_TRIANGLES, r.count, GL_UNSIGNED_SHORT, nullptr);
      glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
      glBindBuffer(GL_ARRAY_BUFFER, 0);
      glBindTexture(GL_TEXTURE_2D, 0);
      glUseProgram(0);
      glPopMatrix();
    }
    glFinish();
  }
  state.SetItemsProcessed(state.iterations() * kNodes);
}
BENCHMARK(BM_RawGL)->Unit(benchmark::kMicrosecond);

// Keeps the time per iteration of each benchmark for the ratio line.
class RatioReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    // The mean of repetitions when there are some, else the single run.
    for (const Run& run : runs) {
      const std::string& name = run.run_name.function_name;
      if (run.run_type == Run::RT_Iteration && !means.count(name)) times[name] = run.GetAdjustedCPUTime();
      if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "mean") {
        times[name] = run.GetAdjustedCPUTime();
        means.insert(name);
      }
    }
    ConsoleReporter::ReportRuns(runs);
  }
  std::map<std::string, double> times;
  std::set<std::string> means;
};

}  // namespace

int main(int argc, char** argv) {
  glutInit(&argc, argv);
  glutInitDisplayMode(GLUT_SINGLE | GLUT_RGBA | GLUT_DEPTH);
  glutInitWindowSize(kWidth, kHeight);
  glutCreateWindow("draw_bench");
  vorn::SCREEN_WIDTH = kWidth;
  vorn::SCREEN_HEIGHT = kHeight;
  glMatrixMode(GL_PROJECTION);
  glOrtho(0, kWidth, 0, kHeight, -10, 10);
  glMatrixMode(GL_MODELVIEW);
  glDisable(GL_DEPTH_TEST);
  {
    auto quiet = vorn::console::set_sink([](std::string_view) {});
    vorn::FXManagerInstance = std::make_shared<vorn::Vorn_FXManage>();
    vorn::console::set_sink(quiet);
  }
  BuildNodes();
  // One draw uploads the buffers, so both loops start from the same GL objects.
  for (const auto& n : nodes) n->draw();
  glFinish();

  benchmark::Initialize(&argc, argv);
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  const auto engine = reporter.times.find("BM_EngineDraw");
  const auto raw = reporter.times.find("BM_RawGL");
  if (engine != reporter.times.end() && raw != reporter.times.end() && raw->second > 0) {
    std::printf("engine / raw GL CPU time for %d nodes: %.3f\n", kNodes, engine->second / raw->second);
  }
  nodes.clear();
  benchmark::Shutdown();
  return 0;
}
