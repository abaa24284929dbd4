#pragma once
// A render target: a frame buffer with a colour texture and a depth-stencil render
// buffer. Leaves the pass's frame buffer (0 outside a pass) and texture 0 bound.
namespace vorn {

struct ColourFrameBuffer {
  unsigned frameBuffer = 0;
  unsigned texture = 0;
};

// `floatMode` makes an RGB16F texture instead of 8-bit RGB; `linearFilter` sets linear
// magnification and minification (without it the texture keeps GL's defaults).
ColourFrameBuffer CreateColourFrameBuffer(int width, int height, bool floatMode, bool linearFilter);

}  // namespace vorn
