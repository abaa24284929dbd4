"""Vorn_2DFX as scripts see it: identifiers, keyword arguments, and the catalogue lookup."""
import pytest

import Vorn3DGameEngine as V

FX = V.Vorn_2DFX


def test_identifiers_and_lookup_from_class_and_instance():
    assert (FX.FX_BEGIN, FX.FX_COLOR, FX.FX_SSAO, FX.FX_VRMODE_RIGHT, FX.FX_END) == (200, 201, 215, 221, 230)
    fx = FX()  # an instance reads the same constants and texts, as the program manager uses it
    assert fx.FX_TEXTURE == 202 and fx.GetPS(fx.FX_GRAY) == FX.GetPS_Gray()
    assert FX.GetVS(FX.FX_SSAO) == FX.GetVS_Texture()
    for fxid in (FX.FX_BEGIN, 212, FX.FX_END, -1):
        assert FX.GetVS(fxid) is None and FX.GetPS(fxid) is None, fxid


def test_vr_mode_arguments():
    assert FX.GetPS(FX.FX_VRMODE_LEFT) == FX.GetPS_VRMode(1) == FX.GetPS_VRMode(eyeID=1, GrassType=1)
    assert FX.GetPS_VRMode(0) == FX.GetPS_VRMode(2) == FX.GetPS(FX.FX_VRMODE_RIGHT)
    with pytest.raises(ValueError, match="GrassType"):
        FX.GetPS_VRMode(1, 3)
