"""Images and image readers as scripts use them."""
import struct

import pytest

import Vorn3DGameEngine as V
from Vorn3DGameEngine import _engine as E


def tga(width, height, depth, descriptor, pixels, kind=2):
    header = bytes([0, 0, kind]) + bytes(9) + struct.pack("<hhBB", width, height, depth, descriptor)
    return header + bytes(pixels)


def dds(width, height, fourcc, data, mips=1):
    header = struct.pack("<7I", 124, 0x1007, height, width, 0, 0, mips) + bytes(44)
    header += struct.pack("<2I", 32, 4) + fourcc + bytes(20)
    header += struct.pack("<5I", 0x1000, 0, 0, 0, 0)
    return b"DDS " + header + data


def test_image_object_pixels_modes_and_save(tmp_path):
    im = V.Vorn_Image("RGBA", (3, 2))
    assert im.size == (3, 2) and im.mode == "RGBA"
    im.putpixel((2, 1), (10, 20, 30))
    assert im.getpixel((-1, -1)) == (10, 20, 30, 255)
    with pytest.raises(IndexError):
        im.getpixel((3, 0))
    with pytest.raises(TypeError):
        im.putpixel((0, 0), "red")
    flipped = im.transpose(V.Vorn_Image.FLIP_TOP_BOTTOM)
    assert im.tobytes_bottom_up() == flipped.tobytes()
    path = tmp_path / "out.png"
    im.save(str(path))
    image, width, height, flag = E._LoadImageFile(str(path))
    assert (width, height, flag, image.tobytes()) == (3, 2, False, im.tobytes())
    with pytest.raises(ValueError):
        im.save(str(tmp_path / "out.jpg"))


def test_readers_return_the_load_record_or_the_failure_value(tmp_path):
    (tmp_path / "a.tga").write_bytes(tga(1, 1, 24, 0, [1, 2, 3]))
    image, width, height, flag = E._LoadTGA(str(tmp_path / "a.tga"))
    assert (width, height, flag, image.getpixel((0, 0))) == (1, 1, True, (3, 2, 1, 255))
    (tmp_path / "b.DDS").write_bytes(dds(4, 4, b"DXT1", bytes([0x00, 0xF8, 0, 0, 0, 0, 0, 0])))
    image, width, height, flag = E._LoadDDS(str(tmp_path / "b.DDS"))
    assert (image.mode, width, height, flag, image.getpixel((3, 3))) == ("RGB", 4, 4, False, (255, 0, 0))
    assert E._LoadImageFile(str(tmp_path / "b.DDS"))[1:] == (4, 4, False)
    # Failures are tuples a script unpacks; the DDS mip failure has three fields only.
    for name, content, expected in [
        ("rle.tga", tga(1, 1, 24, 0, [0x80, 1, 2, 3], kind=10), (None, 0, 0, False)),
        ("mips.dds", dds(4, 4, b"DXT1", bytes(8 * 16), mips=16), (None, 0, 0)),
        ("half.png", b"\x89PNG\r\n\x1a\n\0\0\0\x0dIHDR", (None, 0, 0, False)),
    ]:
        (tmp_path / name).write_bytes(content)
        assert E._LoadImageFile(str(tmp_path / name)) == expected, name


def test_dds_format_tables():
    F = V.Vorn_DXGI_FORMAT
    assert F.DXGI_FORMAT_FORCE_UINT == 4294967295
    assert F.GetDXGIFormat(F.DDS_FOURCC, 0, 0, 0, 0, 0, "DXT5") == F.DXGI_FORMAT_BC3_UNORM
    assert F.GetSurfaceInfo(6, 6, F.DXGI_FORMAT_BC1_UNORM) == (32, 16, 2)
    assert V.Vorn_DDS_CUBE.DDS_CUBEMAP_ALLFACES == 0xFE00
