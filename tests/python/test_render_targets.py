"""Generated textures and render targets as scripts use them: the resource manager's
records, noise and normal map, camera targets in a frame, and their misuse."""
import pytest

import Vorn3DGameEngine as V

from conftest import W, H, lit_quad, pixel

C = V.Vorn_3DCamera
FX = V.Vorn_3DFX


def test_generated_textures_and_the_normal_map(scene, tmp_path):
    res = V.ResManagerInstance
    tex = res.CreateRenderTargetTexture(16, 8)
    fb = res.GetRenderTargetTextureFrameBuffer(tex)
    assert res.GetDynamicTexture(tex) == [16, 8, "RGB", 24] and res.RenderTargetFrameBufferDict[tex] == fb
    noise = res.AddSSAORandTexture()
    assert res.DynamicTextureDict[noise] == [10, 10, "RGB", 24]
    assert res.GetDynamicTexture(654321) is None and res.GetRenderTargetTextureFrameBuffer(noise) is None
    with pytest.raises(ValueError, match="AddSSAORandTexture"):
        res.AddSSAORandTexture(-1)

    # A node finds a target made here through the manager.
    node = V.Vorn_3DGameNode()
    node.SetRenderTargetTexture(tex)
    assert (node.TargetFrameBuffer, node.TargetFrameWidth, node.TargetFrameHeight) == (fb, 16, 8)
    with pytest.raises(TypeError, match="not a generated texture"):
        V.Vorn_3DGameNode().SetRenderTargetTexture(noise + 1000)

    picture = V.Vorn_Image("RGB", (2, 1))
    picture.putpixel((0, 0), (255, 0, 0))
    picture.save(str(tmp_path / "stone.png"))
    (tmp_path / "broken.png").write_bytes(b"not a png")
    res.FoundAllResFile(str(tmp_path))
    image, width, height, flag = res.MakeBumpImage("stone.png")
    assert (width, height, flag, image.getpixel((0, 0))) == (2, 1, False, (0, 0, 255))
    assert res.MakeBumpImage("nothing.png") == (None, 0, 0, False)
    assert res.MakeBumpImage("broken.png") == (None, 0, 0, False)


def test_shadow_map_camera_has_a_depth_target_of_the_window(scene):
    cam = scene.CreateShadowMapCamera(0, 5, 5)
    assert cam in list(scene.CameraList) and cam.CameraType == C.CAMERA_DEPTH
    assert cam.GetDepthTargetTextureSize() == (W, H)
    record = cam.RenderTargetArray[C.CAMERA_DEPTH]
    assert record["FXID"] == FX.FX_DEPTH and record["FrameTexture"] == cam.GetDepthTargetTexture()
    assert cam.GetDepthTargetTextureMatrix()[12:] == pytest.approx([0.5 + 0.5 / W, 0.5 + 0.5 / H, 0.0, 1.0])
    assert cam.GetRenderTargetTexture() is None and cam.GetRenderTargetTextureMatrix() is None

    plain = scene.CreateCamera()
    assert plain.GetDepthTargetTextureSize() == (None, None) and plain.GetDepthTargetTexture() is None
    # With both targets, ApplyFX sets the one created last.
    cam.CreateRenderTarget(8, 8)
    cam.ApplyFX(FX.FX_COLOR)
    assert cam.RenderTargetArray[C.CAMERA_RENDERGARGET]["FXID"] == FX.FX_COLOR
    assert cam.RenderTargetArray[C.CAMERA_DEPTH]["FXID"] == FX.FX_DEPTH

    # A node sampling the shadow map draws in the frame; the window still shows it.
    node = lit_quad(scene)
    node.SetShadowMapCamera(cam)
    scene.DrawScene()
    assert all(c >= 254 for c in pixel(W // 2, H // 2))
    assert node.SubMeshFX == {0: V.FXManagerInstance.GetShader(FX.FX_DIFFUSE)}


def test_colour_target_camera_renders_before_the_window(scene, capsys):
    node = lit_quad(scene)
    cam = scene.CreateCamera(0, 0, 10)
    tex = cam.CreateRenderTarget(64, 32, True)
    assert cam.GetRenderTargetTexture() == tex and cam.CameraType == C.CAMERA_RENDERGARGET
    cam.ApplyFX(FX.FX_COLOR)
    cam.DisableFog()
    scene.DrawScene()
    # The target pass leaves the window's frame buffer and viewport to the main view.
    assert all(c >= 254 for c in pixel(W // 2, H // 2))
    assert pixel(W // 2 + 70, H // 2) == (0, 0, 0)
    assert node.SubMeshFX == {0: V.FXManagerInstance.GetShader(FX.FX_DIFFUSE)}

    # Direct calls take any list of nodes, the registries' live lists included.
    cam.RenderObjListToRenderTarget([node])
    cam.RenderObjListToRenderTarget(scene.Get3DObjectArray())
    for wrong in (node, [node, 3]):
        with pytest.raises(TypeError, match="RenderObjListToRenderTarget"):
            cam.RenderObjListToRenderTarget(wrong)

    # The object kind hands over the caught node as a list, which a node is not.
    cam.SetCameraTargetType(C.CAMERA_TARGET_OBJECT)
    scene.DrawScene()  # nothing caught: nothing rendered
    cam.Catch(node)
    with pytest.raises(TypeError, match="CAMERA_TARGET_OBJECT"):
        scene.DrawScene()
    capsys.readouterr()


def test_a_target_camera_under_a_node_it_renders_draws_once(scene):
    # The camera is drawn as the quad's child while it renders the quad into its target:
    # it must not render itself again without end.
    node = lit_quad(scene)
    cam = scene.CreateCamera(0, 0, 10)
    node.AddChild(cam)
    cam.CreateRenderTarget(16, 16, True)
    cam.ApplyFX(FX.FX_COLOR)
    scene.DrawScene()
    node.draw(1, 0.5)
    assert all(c >= 254 for c in pixel(W // 2, H // 2))
