#pragma once
// A GL buffer object over typed data: vertex data as 32-bit floats, index data as
// unsigned 16-bit integers, or 32-bit ones for submeshes with more vertices. Building one needs no GL context; the data goes to GL on
// the first bind(), after which the CPU copy is dropped. Destroying the object deletes
// its GL buffer, so replacing a node's buffer entry releases the old buffer.
#include <cstddef>
#include <cstdint>
#include <variant>
#include <vector>

namespace vorn {

class BufferObject {
 public:
  using FloatData = std::vector<float>;
  using IndexData = std::vector<std::uint16_t>;
  using WideIndexData = std::vector<std::uint32_t>;

  // target is the GL binding point (GL_ARRAY_BUFFER, GL_ELEMENT_ARRAY_BUFFER).
  BufferObject(FloatData data, int target);
  BufferObject(IndexData data, int target);
  BufferObject(WideIndexData data, int target);
  ~BufferObject();
  BufferObject(const BufferObject&) = delete;
  BufferObject& operator=(const BufferObject&) = delete;

  // Binds to the target, creating and filling the GL buffer on the first call.
  void bind();
  void unbind();

  int target() const noexcept { return target_; }
  // Number of elements (floats or indices).
  std::size_t count() const noexcept { return count_; }
  bool is_index_data() const noexcept { return !std::holds_alternative<FloatData>(data_); }
  // Whether the indices are 32-bit (GL_UNSIGNED_INT) rather than 16-bit.
  bool wide_indices() const noexcept { return wide_; }
  // GL buffer name; 0 until the first bind.
  unsigned gl_name() const noexcept { return name_; }
  bool uploaded() const noexcept { return name_ != 0; }
  // Starts loading the fields a draw reads (a hint; changes nothing).
  void PrefetchDrawFields() const noexcept {
    __builtin_prefetch(&target_);
    __builtin_prefetch(&wide_);
  }
  // The data while it is not uploaded yet (empty afterwards).
  const FloatData* float_data() const noexcept { return std::get_if<FloatData>(&data_); }
  const IndexData* index_data() const noexcept { return std::get_if<IndexData>(&data_); }
  const WideIndexData* wide_index_data() const noexcept { return std::get_if<WideIndexData>(&data_); }

 private:
  std::variant<FloatData, IndexData, WideIndexData> data_;
  int target_;
  std::size_t count_;
  unsigned name_ = 0;
  bool wide_ = false;
};

}  // namespace vorn
