"""Vorn_2DFX as scripts see it: identifiers, texts, and the catalogue lookup."""
import pytest

import Vorn3DGameEngine as V

FX = V.Vorn_2DFX

PROGRAM_IDS = {201, 202, 203, 204, 205, 206, 207, 208, 209, 210, 211, 214, 215, 220, 221}


def test_identifiers_are_class_constants():
    assert (FX.FX_BEGIN, FX.FX_COLOR, FX.FX_DEFER_LIGHT, FX.FX_SSAO) == (200, 201, 214, 215)
    assert (FX.FX_VRMODE_LEFT, FX.FX_VRMODE_RIGHT, FX.FX_END) == (220, 221, 230)
    # An instance reads the same constants and texts, as the program manager uses it.
    fx = FX()
    assert fx.FX_TEXTURE == 202
    assert fx.GetPS(fx.FX_GRAY) == FX.GetPS_Gray()


def test_lookup_gives_none_where_the_catalogue_has_no_program():
    for fxid in range(FX.FX_BEGIN - 5, FX.FX_END + 5):
        vs, ps = FX.GetVS(fxid), FX.GetPS(fxid)
        if fxid in PROGRAM_IDS:
            assert isinstance(vs, str) and isinstance(ps, str), fxid
        else:
            assert vs is None and ps is None, fxid
    assert FX.GetVS(FX.FX_COLOR) == FX.GetVS_Color()
    assert FX.GetVS(FX.FX_SSAO) == FX.GetVS_Texture()
    assert FX.GetPS(FX.FX_MSK) == FX.GetPS_MSK()


def test_vr_mode_arguments():
    assert FX.GetPS(FX.FX_VRMODE_LEFT) == FX.GetPS_VRMode(1) == FX.GetPS_VRMode(eyeID=1, GrassType=1)
    assert FX.GetPS(FX.FX_VRMODE_RIGHT) == FX.GetPS_VRMode(2)
    assert FX.GetPS_VRMode(0) == FX.GetPS_VRMode(2)
    assert "    if (( vOutTexcoords.x * vOutTexcoords.y) < 0.04|| vOutTexcoords.x * (1.0 - vOutTexcoords.y) < 0.04 )\n" in (
        FX.GetPS_VRMode(2, GrassType=2))
    with pytest.raises(ValueError, match="GrassType"):
        FX.GetPS_VRMode(1, 3)


def test_operations_are_documented():
    assert FX.__doc__
    for name in ("GetVS", "GetPS", "GetPS_VRMode", "GetPS_SSAO", "GetVS_Color"):
        assert getattr(FX, name).__doc__, name
    assert "eyeID" in FX.GetPS_VRMode.__doc__ and "GrassType" in FX.GetPS_VRMode.__doc__
