// Image decoding: the engine's loader against libspng and TurboJPEG called directly on
// the same 2048x2048 files (the loader's overhead), and BC1/BC3 software decoding
// throughput (items per second = texels per second).
#include <benchmark/benchmark.h>
#include <spng.h>
#include <turbojpeg.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "resource/bc_decode.h"
#include "resource/dds_reader.h"
#include "resource/image.h"
#include "resource/image_file_loader.h"
#include "resource/png_codec.h"

namespace {

using Bytes = std::vector<std::uint8_t>;
constexpr int kSide = 2048;
const std::string kPngPath = "/tmp/vorn_bench_2048.png";
const std::string kJpgPath = "/tmp/vorn_bench_2048.jpg";

// A picture with smooth gradients and some noise, so neither codec gets a trivial file.
vorn::Image make_picture() {
  vorn::Image im(vorn::Image::Mode::RGB, kSide, kSide);
  std::mt19937 rng(7);
  std::uniform_int_distribution<int> noise(-12, 12);
  std::uint8_t* p = im.data().data();
  for (int y = 0; y < kSide; ++y) {
    for (int x = 0; x < kSide; ++x, p += 3) {
      p[0] = static_cast<std::uint8_t>(std::clamp((x / 8) + noise(rng), 0, 255));
      p[1] = static_cast<std::uint8_t>(std::clamp((y / 8) + noise(rng), 0, 255));
      p[2] = static_cast<std::uint8_t>(std::clamp(((x ^ y) & 255) / 2 + 64, 0, 255));
    }
  }
  return im;
}

void write_file(const std::string& path, const Bytes& b) {
  std::ofstream out(path, std::ios::binary);
  out.write(reinterpret_cast<const char*>(b.data()), static_cast<std::streamsize>(b.size()));
}

// The baselines read the file the same way the loader does: size, then one read.
Bytes read_file(const std::string& path) {
  std::ifstream in(path, std::ios::binary | std::ios::ate);
  Bytes b(static_cast<std::size_t>(in.tellg()));
  in.seekg(0);
  in.read(reinterpret_cast<char*>(b.data()), static_cast<std::streamsize>(b.size()));
  return b;
}

// Writes the two test files once per process.
void ensure_files() {
  static const bool done = [] {
    const vorn::Image im = make_picture();
    write_file(kPngPath, vorn::EncodePNG(im));
    tjhandle tj = tjInitCompress();
    unsigned char* out = nullptr;
    unsigned long size = 0;
    tjCompress2(tj, im.data().data(), kSide, 0, kSide, TJPF_RGB, &out, &size, TJSAMP_420, 90, 0);
    write_file(kJpgPath, Bytes(out, out + size));
    tjFree(out);
    tjDestroy(tj);
    return true;
  }();
  (void)done;
}

void BM_LoaderPNG(benchmark::State& state) {
  ensure_files();
  for (auto _ : state) {
    vorn::ImageLoadResult r = vorn::LoadImageFile(kPngPath);
    if (!r.image) state.SkipWithError("PNG did not load");
    benchmark::DoNotOptimize(r.image->data().data());
  }
  state.SetItemsProcessed(state.iterations() * kSide * kSide);
}

void BM_DirectSpng(benchmark::State& state) {
  ensure_files();
  for (auto _ : state) {
    const Bytes file = read_file(kPngPath);
    spng_ctx* ctx = spng_ctx_new(0);
    spng_set_png_buffer(ctx, file.data(), file.size());
    std::size_t size = 0;
    spng_decoded_image_size(ctx, SPNG_FMT_RGB8, &size);
    Bytes out(size);
    if (spng_decode_image(ctx, out.data(), out.size(), SPNG_FMT_RGB8, 0) != 0) state.SkipWithError("spng failed");
    spng_ctx_free(ctx);
    benchmark::DoNotOptimize(out.data());
  }
  state.SetItemsProcessed(state.iterations() * kSide * kSide);
}

void BM_LoaderJPG(benchmark::State& state) {
  ensure_files();
  for (auto _ : state) {
    vorn::ImageLoadResult r = vorn::LoadImageFile(kJpgPath);
    if (!r.image) state.SkipWithError("JPG did not load");
    benchmark::DoNotOptimize(r.image->data().data());
  }
  state.SetItemsProcessed(state.iterations() * kSide * kSide);
}

void BM_DirectTurboJPEG(benchmark::State& state) {
  ensure_files();
  for (auto _ : state) {
    const Bytes file = read_file(kJpgPath);
    tjhandle tj = tjInitDecompress();
    int w = 0, h = 0, ss = 0, cs = 0;
    tjDecompressHeader3(tj, file.data(), file.size(), &w, &h, &ss, &cs);
    Bytes out(static_cast<std::size_t>(w) * h * 3);
    if (tjDecompress2(tj, file.data(), file.size(), out.data(), w, w * 3, h, TJPF_RGB, 0) != 0) {
      state.SkipWithError("TurboJPEG failed");
    }
    tjDestroy(tj);
    benchmark::DoNotOptimize(out.data());
  }
  state.SetItemsProcessed(state.iterations() * kSide * kSide);
}

// Random blocks: every index and end colour pattern occurs.
Bytes random_blocks(std::size_t count, std::size_t block_bytes) {
  Bytes b(count * block_bytes);
  std::mt19937 rng(11);
  for (auto& v : b) v = static_cast<std::uint8_t>(rng());
  return b;
}

void BM_DecodeBC(benchmark::State& state, vorn::BCKind kind) {
  const int side = static_cast<int>(state.range(0));
  const Bytes blocks = random_blocks(static_cast<std::size_t>(side / 4) * (side / 4), vorn::BCBlockBytes(kind));
  vorn::Image image(vorn::BCImageMode(kind), side, side);
  for (auto _ : state) {
    vorn::DecodeBCSurface(kind, blocks.data(), image);
    benchmark::DoNotOptimize(image.data().data());
  }
  state.SetItemsProcessed(state.iterations() * side * side);
}

// The whole DDS read of a 2048x2048 BC3 file in memory: header, allocation and decode.
void BM_ReadDDS_BC3(benchmark::State& state) {
  Bytes file = {'D', 'D', 'S', ' '};
  const auto u32 = [&file](std::uint32_t v) {
    for (int i = 0; i < 4; ++i) file.push_back(static_cast<std::uint8_t>(v >> (8 * i)));
  };
  for (std::uint32_t v : {124u, 0x1007u, std::uint32_t(kSide), std::uint32_t(kSide), 0u, 0u, 1u}) u32(v);
  for (int i = 0; i < 11; ++i) u32(0);
  u32(32);
  u32(4);
  for (char c : {'D', 'X', 'T', '5'}) file.push_back(static_cast<std::uint8_t>(c));
  for (int i = 0; i < 5; ++i) u32(0);
  for (std::uint32_t v : {0x1000u, 0u, 0u, 0u, 0u}) u32(v);
  const Bytes blocks = random_blocks(static_cast<std::size_t>(kSide / 4) * (kSide / 4), 16);
  file.insert(file.end(), blocks.begin(), blocks.end());
  for (auto _ : state) {
    vorn::ImageLoadResult r = vorn::ReadDDS(file);
    if (!r.image) state.SkipWithError("DDS did not load");
    benchmark::DoNotOptimize(r.image->data().data());
  }
  state.SetItemsProcessed(state.iterations() * kSide * kSide);
}

BENCHMARK(BM_LoaderPNG)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DirectSpng)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LoaderJPG)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DirectTurboJPEG)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_DecodeBC, BC1, vorn::BCKind::BC1)->Arg(1024)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_DecodeBC, BC3, vorn::BCKind::BC3)->Arg(1024)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadDDS_BC3)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
