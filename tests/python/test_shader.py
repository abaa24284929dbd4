"""Shader generation as scripts use it: the slot assembler, the 3D catalogue, and the
program manager under a GL context."""
import os
import subprocess
import sys

import pytest

import Vorn3DGameEngine as V

NINE_LINES = [
    "#version 120",
    "varying   float  vDepth;",
    "uniform   mat4   uModelMatrix;",
    "void main()",
    "{",
    "vec3 wPosition = (uModelMatrix * gl_Vertex).xyz;",
    "gl_Position = gl_ModelViewProjectionMatrix * vec4(wPosition,1.0);",
    "vDepth = gl_Position.z;",
    "}",
]

REFUSED = {
    V.Vorn_3DFX.FX_NORMAL_VIEW_INVERSE,
    V.Vorn_3DFX.FX_DIFFUSE_ENVREFLECT,
    V.Vorn_3DFX.FX_TEXTURE_SHADOWMAP,
    V.Vorn_3DFX.FX_DIFFUSE_TEXTURE_BUMP,
    V.Vorn_3DFX.FX_DIFFUSE_TEXTURE_ENVREFLECT,
    V.Vorn_3DFX.FX_DIFFUSE_TEXTURE_ENVREFLECT_SPECULAR,
    V.Vorn_3DFX.FX_DIFFUSE_SKIN,
    V.Vorn_3DFX.FX_DIFFUSE_SPECULAR_SKIN,
    V.Vorn_3DFX.FX_GRASS,
    V.Vorn_3DFX.FX_OCEAN,
}


def test_assembler_text_and_slots(capsys):
    code = V.Vorn_Shader_Code()
    assert code.GenVSCode() == "\n".join(NINE_LINES) + "\n"
    assert V.Vorn_Shader_Code.VS_CODE_GENERATE_GRASS == V.Vorn_Shader_Code.VS_CODE_GENERATE_SKINPOSITION == 72
    assert V.Vorn_Shader_Code.PS_CODE_VARY_OCEAN == 11

    code.GenVSFunCode_Ocean()
    lines = code.GenVSCode().split("\n")
    assert lines.index("vec4 P = vec4(gl_Vertex.x,0.0,gl_Vertex.z,1.0);") < lines.index("void main()")

    # The dicts read as copies; assigning a whole dict replaces the slots.
    slots = code.VSCode_Dict
    slots[0] = ["#version 130"]
    assert code.GenVSCode().startswith("#version 120\n")
    code.VSCode_Dict = slots
    assert code.GenVSCode().startswith("#version 130\n")

    code.PrintVSCode()
    printed = capsys.readouterr().out
    assert printed.startswith("['#version 130', ") and printed.endswith("'}']\n")


def test_assembler_arguments_and_failures():
    code = V.Vorn_Shader_Code()
    with pytest.raises(KeyError):
        code.SetPSVary_UV()
    with pytest.raises(TypeError):
        code.SetVSAttribute_Version(120)
    code.SetPSUni_Texture()
    code.SetPSUni_CubeTexture(texIndex=1)
    assert code.PSCode_Dict[V.Vorn_Shader_Code.PS_CODE_UNIFORM_TEXTURE] == [
        "uniform sampler2D     texture0;",
        "uniform samplerCube     texture1;",
    ]
    # Only a value equal to True adds the highlight to the colour.
    slot = V.Vorn_Shader_Code.PS_CODE_GENERATE_ADDSPECULARCOLOR
    for add_mode, added in ((True, True), (1, True), (False, False), ("yes", False)):
        code.GenPSFunCode_Specular(add_mode)
        assert code.PSCode_Dict[slot][0].startswith("psColor = psColor + ") == added, add_mode
    code.GenPSFunCode_Specular()
    assert code.PSCode_Dict[slot][0].startswith("psColor = psColor + ")


def test_catalogue_pair_is_stateful():
    fx = V.Vorn_3DFX()
    assert fx.shaderCode is None
    with pytest.raises(AttributeError):
        fx.GetPS(V.Vorn_3DFX.FX_DIFFUSE_TEXTURE_SPECULAR)
    # Fixed pixel texts need no vertex text.
    assert fx.GetPS(V.Vorn_3DFX.FX_COLOR).startswith("#version 330 core")

    vs = fx.GetVS(V.Vorn_3DFX.FX_DIFFUSE_TEXTURE_SPECULAR)
    assert isinstance(fx.shaderCode, V.Vorn_Shader_Code)
    assert fx.shaderCode.GenVSCode() == vs
    ps = fx.GetPS(V.Vorn_3DFX.FX_DIFFUSE_TEXTURE_SPECULAR)
    assert "psColor = psColor * vec4(vSunLightColor,1.0); \n" in ps
    # A second pixel pass on the same object appends its sampler once more.
    assert fx.GetPS_Diffuse_Texture_Specular().count("uniform sampler2D     texture0;") == 2

    # Identifiers compare as numbers; gaps and other values give None.
    assert fx.GetVS(310.0) == fx.GetVS(V.Vorn_3DFX.FX_DIFFUSE)
    for fxid in ("310", None, 310.5, 319, 340, 2**70):
        fx.GetVS(V.Vorn_3DFX.FX_DIFFUSE_TEXTURE_SHADOWMAP)
        assert fx.GetPS(fxid) is None, fxid
    assert V.Vorn_TEXID.TEX_TERRAIN_SHADOW == 5 and V.Vorn_TEXID.TEX_OCEAN_REFLECT == 3


def test_manager_needs_a_context():
    # In a fresh process with no window, construction raises instead of reaching no driver.
    script = (
        "import Vorn3DGameEngine as V\n"
        "try:\n"
        "    V.Vorn_FXManage()\n"
        "except RuntimeError as e:\n"
        "    print('RuntimeError', e)\n"
    )
    result = subprocess.run([sys.executable, "-c", script], capture_output=True, text=True, env=os.environ.copy())
    assert result.returncode == 0, result.stderr
    assert result.stdout.startswith("RuntimeError Vorn_FXManage.__init__: no current OpenGL context")


@pytest.fixture(scope="module")
def manager(gl_context):
    return V.Vorn_FXManage()


def test_manager_maps_and_lookups(manager, capsys):
    assert sorted(manager.Shader_2DFX_Dict) == list(range(200, 230))
    assert sorted(manager.Shader_3DFX_Dict) == list(range(300, 380))
    for fxid in (212, 319, 300, 380, None, "x"):
        assert manager.GetShader(fxid) is None, fxid
    assert manager.GetShader(V.Vorn_3DFX.FX_DIFFUSE) == manager.Shader_3DFX_Dict[310] is not None

    fx = V.Vorn_3DFX()
    vs, ps = fx.GetVS(303), fx.GetPS(303)
    assert manager.CreateShader("", ps) is None
    assert manager.CreateShader(vs, None) is None
    assert isinstance(manager.CreateShader(vs, ps), int)

    manager.PrintShader(999)
    manager.PrintShader(V.Vorn_3DFX.FX_BEGIN)
    assert capsys.readouterr().out == ""
    manager.PrintShader(V.Vorn_3DFX.FX_COLOR)
    out = capsys.readouterr().out.split("\n")
    assert out[:3] == ["VSCode (303)=>", "", "#version 120"]
    assert "PSCode (303)=>" in out


def test_diagnostic_reports_refused_programs(manager):
    report = manager.DiagnoseShaders()
    by_id = {status.FXID: status for status in report}
    assert set(by_id) == {i for d in (manager.Shader_2DFX_Dict, manager.Shader_3DFX_Dict) for i, p in d.items() if p}
    for fxid, status in by_id.items():
        if fxid in REFUSED:
            assert not status.Usable and not status.Linked, status
            assert status.VSLog or status.PSLog
        else:
            assert status.Usable, (status, status.VSLog, status.PSLog, status.LinkLog)
    assert "vec3 cannot be assigned to variable of type vec4" in by_id[V.Vorn_3DFX.FX_NORMAL_VIEW_INVERSE].PSLog


def test_fx_manager_global_is_live(manager):
    assert V.FXManagerInstance is None
    V.FXManagerInstance = manager
    try:
        assert V.FXManagerInstance is manager
        with pytest.raises(TypeError):
            V.FXManagerInstance = 5
    finally:
        V.FXManagerInstance = None
    assert V.FXManagerInstance is None
