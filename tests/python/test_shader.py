"""Shader generation as scripts use it: the slot assembler, the 3D catalogue, and the
program manager under a GL context. Its refusal without a context is in test_gl_safety."""
import pytest

import Vorn3DGameEngine as V

SC = V.Vorn_Shader_Code


def test_assembler_slots_are_copies_and_arguments_are_checked():
    code = SC()
    assert code.GenVSCode().startswith("#version 120\n")
    assert SC.VS_CODE_GENERATE_GRASS == SC.VS_CODE_GENERATE_SKINPOSITION == 72
    # The dicts read as copies; assigning a whole dict replaces the slots.
    slots = code.VSCode_Dict
    slots[0] = ["#version 130"]
    assert code.GenVSCode().startswith("#version 120\n")
    code.VSCode_Dict = slots
    assert code.GenVSCode().startswith("#version 130\n")

    with pytest.raises(KeyError):
        code.SetPSVary_UV()
    with pytest.raises(TypeError):
        code.SetVSAttribute_Version(120)
    code.SetPSUni_Texture()
    code.SetPSUni_CubeTexture(texIndex=1)
    assert code.PSCode_Dict[SC.PS_CODE_UNIFORM_TEXTURE][1] == "uniform samplerCube     texture1;"
    # Only a value equal to True adds the highlight to the colour.
    slot = SC.PS_CODE_GENERATE_ADDSPECULARCOLOR
    for add_mode, added in ((True, True), (1, True), (False, False), ("yes", False)):
        code.GenPSFunCode_Specular(add_mode)
        assert code.PSCode_Dict[slot][0].startswith("psColor = psColor + ") == added, add_mode
    code.GenPSFunCode_Specular()
    assert code.PSCode_Dict[slot][0].startswith("psColor = psColor + ")


def test_catalogue_takes_script_values_as_identifiers():
    fx = V.Vorn_3DFX()
    assert fx.shaderCode is None
    with pytest.raises(AttributeError):
        fx.GetPS(V.Vorn_3DFX.FX_DIFFUSE_TEXTURE_SPECULAR)
    vs = fx.GetVS(V.Vorn_3DFX.FX_DIFFUSE_TEXTURE_SPECULAR)
    assert isinstance(fx.shaderCode, SC) and fx.shaderCode.GenVSCode() == vs
    # Identifiers compare as numbers; gaps and other values give None.
    assert fx.GetVS(310.0) == fx.GetVS(V.Vorn_3DFX.FX_DIFFUSE)
    for fxid in ("310", None, 310.5, 319, 340, 2**70):
        fx.GetVS(V.Vorn_3DFX.FX_DIFFUSE_TEXTURE_SHADOWMAP)
        assert fx.GetPS(fxid) is None, fxid
    assert V.Vorn_TEXID.TEX_TERRAIN_SHADOW == 5


@pytest.fixture(scope="module")
def manager(gl_context):
    return V.Vorn_FXManage()


def test_manager_lookups_and_texts(manager):
    # The maps' contents, empty texts and the printed source are the C++ suite's (fx_manage_gl_test).
    for fxid in (212, 319, 380, None, "x"):
        assert manager.GetShader(fxid) is None, fxid
    assert manager.GetShader(V.Vorn_3DFX.FX_DIFFUSE) == manager.Shader_3DFX_Dict[310] is not None
    fx = V.Vorn_3DFX()
    vs, ps = fx.GetVS(303), fx.GetPS(303)
    assert manager.CreateShader(vs, None) is None and isinstance(manager.CreateShader(vs, ps), int)
    report = {status.FXID: status for status in manager.DiagnoseShaders()}
    bad = report[V.Vorn_3DFX.FX_NORMAL_VIEW_INVERSE]
    assert not bad.Usable and "vec3 cannot be assigned to variable of type vec4" in bad.PSLog
    assert report[V.Vorn_3DFX.FX_DIFFUSE].Usable
