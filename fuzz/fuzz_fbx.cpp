// libFuzzer target of the FBX path as the engine runs it: in the reading helper process
// the importer reads the bytes as FBX and our mapping turns the scene into submeshes,
// skins and actions, which come back over the helper's channel. Any input gives no
// model ("Load Failed." or "No find Root"), a model, or one of the engine's exceptions;
// a model's arrays are whole vertex records and its indices name vertices it holds.
// A helper may die by the library's own abort (a signal). One that exits with an error
// code had a sanitizer report: in our code, or in the library (its deep recursion
// overflows the stack on some files). With FUZZ_HELPER_DEATHS naming a folder, such
// inputs are kept there for a look at their reports and the run goes on; without it,
// the target fails on them.
//
// The mapping runs in the helper, a fork of this process: the helper sends its coverage
// counters back with each answer and they are added to ours, so that the fuzzer is
// guided by the mapping code it reaches there.
#include <elf.h>
#include <sanitizer/common_interface_defs.h>
#include <link.h>
#include <sys/wait.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/console.h"
#include "mesh/import_helper.h"
#include "mesh/model_import.h"
#include "mesh/model_plan_wire.h"

namespace {

// The instrumented code's 8-bit coverage counters, which the compiler places in one
// section of the program ("__sancov_cntrs"); the same addresses in the helper, a fork
// of this process. Found from the program file's section headers and its load address.
// (Naming the section's start and end symbols in code keeps the fuzzer from finding
// the counters itself.)
// Where the program (the first object dl_iterate_phdr reports) is loaded.
std::uintptr_t LoadBase() {
  std::uintptr_t base = 0;
  dl_iterate_phdr(
      [](dl_phdr_info* info, std::size_t, void* out) {
        *static_cast<std::uintptr_t*>(out) = info->dlpi_addr;
        return 1;
      },
      &base);
  return base;
}

std::span<std::uint8_t> FindCounters() {
  std::FILE* f = std::fopen("/proc/self/exe", "rb");
  if (!f) return {};
  Elf64_Ehdr head{};
  std::vector<Elf64_Shdr> sections;
  std::vector<char> names;
  bool ok = std::fread(&head, sizeof head, 1, f) == 1 && head.e_shentsize == sizeof(Elf64_Shdr) &&
            head.e_shstrndx < head.e_shnum;
  if (ok) {
    sections.resize(head.e_shnum);
    ok = std::fseek(f, static_cast<long>(head.e_shoff), SEEK_SET) == 0 &&
         std::fread(sections.data(), sizeof(Elf64_Shdr), sections.size(), f) == sections.size();
  }
  if (ok) {
    const Elf64_Shdr& strings = sections[head.e_shstrndx];
    names.resize(strings.sh_size + 1);
    ok = std::fseek(f, static_cast<long>(strings.sh_offset), SEEK_SET) == 0 &&
         std::fread(names.data(), 1, strings.sh_size, f) == strings.sh_size;
  }
  std::fclose(f);
  if (!ok) return {};
  for (const Elf64_Shdr& s : sections) {
    if (s.sh_name < names.size() && std::strcmp(&names[s.sh_name], "__sancov_cntrs") == 0) {
      return {reinterpret_cast<std::uint8_t*>(LoadBase() + s.sh_addr), static_cast<std::size_t>(s.sh_size)};
    }
  }
  return {};
}

std::span<std::uint8_t> Counters() {
  static const std::span<std::uint8_t> counters = FindCounters();
  return counters;
}

void DiscardLine(std::string_view) {}

void Check(bool ok, int line = __builtin_LINE()) {
  if (ok) return;
  std::fprintf(stderr, "fuzz_fbx: the check on line %d failed\n", line);
  std::abort();
}

void CheckModel(const vorn::ModelPlan& model) {
  Check(static_cast<bool>(model.tree));
  for (const vorn::ModelSubmeshPlan& plan : model.submeshes) {
    const std::size_t floatsPerVertex = plan.withSkin ? 15 : 8;
    Check(plan.vertices.size() % floatsPerVertex == 0);
    Check(plan.indices.size() % 3 == 0);
    const std::size_t vertexCount = plan.vertices.size() / floatsPerVertex;
    for (std::int64_t i : plan.indices) Check(i >= 0 && static_cast<std::size_t>(i) < vertexCount);
    Check(plan.clusters.size() <= 64);
    for (const vorn::FbxCluster& c : plan.clusters)
      Check(c.node >= 0 && static_cast<std::size_t>(c.node) < model.tree->nodes.size());
  }
  for (std::size_t n = 0; n < model.tree->nodes.size(); ++n)
    Check(model.tree->nodes[n].parent < static_cast<std::int64_t>(n));
}

bool KeepInput(const std::uint8_t* data, std::size_t size) {
  const char* folder = std::getenv("FUZZ_HELPER_DEATHS");
  if (!folder || !*folder) return false;
  std::uint64_t hash = 1469598103934665603ull;  // FNV-1a names the file
  for (std::size_t i = 0; i < size; ++i) hash = (hash ^ data[i]) * 1099511628211ull;
  const std::string path = std::string(folder) + "/death-" + std::to_string(hash);
  std::FILE* f = std::fopen(path.c_str(), "wb");
  if (!f) return false;
  const bool written = std::fwrite(data, 1, size, f) == size;
  std::fclose(f);
  std::fprintf(stderr, "fuzz_fbx: kept as %s\n", path.c_str());
  return written;
}

// In the helper: the engine's answer, then the counters this request reached there.
std::string ServeWithCoverage(std::string_view request) {
  // A sanitizer report in the helper ends only the helper: the fuzzer's own crash
  // handling (which would save the parent's input as a crash) stays out of it.
  static const bool quiet = (__sanitizer_set_death_callback(nullptr), true);
  (void)quiet;
  const auto counters = Counters();
  std::memset(counters.data(), 0, counters.size());
  std::string answer = vorn::ServeModelImport(request);
  answer.append(reinterpret_cast<const char*>(counters.data()), counters.size());
  return answer;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
  vorn::console::set_sink(&DiscardLine);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  vorn::ImportRequest request;
  request.fromMemory = true;
  request.path = "fuzz/model.fbx";
  request.hint = "fbx";
  request.bytes.assign(reinterpret_cast<const char*>(data), size);
  vorn::HelperAnswer answer = vorn::RunInImportHelper(vorn::EncodeImportRequest(request), &ServeWithCoverage);
  if (answer.status == vorn::HelperAnswer::Status::Died) {
    const int status = answer.waitStatus;
    if (WIFEXITED(status) && WEXITSTATUS(status) != 0) {
      std::fprintf(stderr, "fuzz_fbx: the reading helper exited with code %d\n", WEXITSTATUS(status));
      if (!KeepInput(data, size)) std::abort();
    }
    return 0;
  }
  Check(answer.status == vorn::HelperAnswer::Status::Answered);
  const auto counters = Counters();
  Check(answer.bytes.size() >= counters.size());
  const std::size_t outcomeSize = answer.bytes.size() - counters.size();
  for (std::size_t i = 0; i < counters.size(); ++i) {
    const unsigned sum = counters[i] + static_cast<std::uint8_t>(answer.bytes[outcomeSize + i]);
    counters[i] = static_cast<std::uint8_t>(sum > 255 ? 255 : sum);
  }
  const auto outcome = vorn::DecodeImportOutcome(std::span(answer.bytes.data(), outcomeSize));
  Check(outcome.has_value());
  if (outcome->plan) CheckModel(*outcome->plan);
  return 0;
}
