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
    assert im.getpixel((0, 0)) == (0, 0, 0, 0)
    im.putpixel((2, 1), (10, 20, 30))
    assert im.getpixel((-1, -1)) == (10, 20, 30, 255)
    with pytest.raises(IndexError):
        im.getpixel((3, 0))
    with pytest.raises(TypeError):
        im.putpixel((0, 0), "red")
    flipped = im.transpose(V.Vorn_Image.FLIP_TOP_BOTTOM)
    assert flipped.getpixel((2, 0)) == (10, 20, 30, 255)
    assert im.tobytes_bottom_up() == flipped.tobytes()
    assert V.Vorn_Image("L", (1, 1), 300).getpixel((0, 0)) == 255

    path = tmp_path / "out.png"
    im.save(str(path))
    image, width, height, flag = E._LoadImageFile(str(path))
    assert (width, height, flag) == (3, 2, False)
    assert image.tobytes() == im.tobytes()
    with pytest.raises(ValueError):
        im.save(str(tmp_path / "out.jpg"))


def test_readers_return_the_load_record(tmp_path):
    (tmp_path / "a.tga").write_bytes(tga(1, 1, 24, 0, [1, 2, 3]))
    image, width, height, flag = E._LoadTGA(str(tmp_path / "a.tga"))
    assert (width, height, flag) == (1, 1, True)
    assert image.getpixel((0, 0)) == (3, 2, 1, 255)

    red_bc1 = bytes([0x00, 0xF8, 0, 0, 0, 0, 0, 0])
    (tmp_path / "a.dds").write_bytes(dds(4, 4, b"DXT1", red_bc1))
    image, width, height, flag = E._LoadDDS(str(tmp_path / "a.dds"))
    assert (image.mode, width, height, flag) == ("RGB", 4, 4, False)
    assert image.getpixel((3, 3)) == (255, 0, 0)
    # Through the extension dispatch, upper-case extension included.
    (tmp_path / "b.DDS").write_bytes(dds(4, 4, b"DXT1", red_bc1))
    assert E._LoadImageFile(str(tmp_path / "b.DDS"))[1:] == (4, 4, False)


@pytest.mark.parametrize(
    "name, content, expected",
    [
        ("rle.tga", tga(1, 1, 24, 0, [0x80, 1, 2, 3], kind=10), (None, 0, 0, False)),
        ("mips.dds", dds(4, 4, b"DXT1", bytes(8 * 16), mips=16), (None, 0, 0)),
        ("six.dds", dds(6, 6, b"DXT1", bytes(32)), (None, 0, 0, False)),
        ("half.png", b"\x89PNG\r\n\x1a\n\0\0\0\x0dIHDR", (None, 0, 0, False)),
        ("pic.bmp", b"BM", (None, 0, 0, False)),
    ],
)
def test_malformed_files_give_the_failure_value(tmp_path, name, content, expected):
    path = tmp_path / name
    path.write_bytes(content)
    assert E._LoadImageFile(str(path)) == expected


def test_dds_format_tables():
    F = V.Vorn_DXGI_FORMAT
    assert F.DXGI_FORMAT_B4G4R4A4_UNORM == 115 and F.DXGI_FORMAT_V408 == 132
    assert F.DXGI_FORMAT_FORCE_UINT == 4294967295
    assert F.GetDXGIFormat(F.DDS_FOURCC, 0, 0, 0, 0, 0, "DXT5") == F.DXGI_FORMAT_BC3_UNORM
    assert F.GetSurfaceInfo(6, 6, F.DXGI_FORMAT_BC1_UNORM) == (32, 16, 2)
    assert F.BitsPerPixel(F.DXGI_FORMAT_R16G16B16A16_FLOAT) == 64
    assert F.CheckBitMask(1, 1, 2, 2, 3, 3, 4, 4) and not F.CheckBitMask(1, 1, 2, 2, 3, 3, 4, 5)
    assert V.Vorn_DDS_CUBE.DDS_CUBEMAP_ALLFACES == 0xFE00
    assert V.Vorn_DX12_RESOURCE_DIMENSION.D3D12_RESOURCE_DIMENSION_TEXTURE3D == 4
    assert V.Vorn_DX11_RESOURCE_DIMENSION.D3D11_RESOURCE_DIMENSION_TEXTURE2D == 3
