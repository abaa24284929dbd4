// Image filter pixel texts of Vorn_2DFX: blur, mosaic, bloom passes, depth of field, noise.
#include "shader/fx_2d.h"

namespace vorn {

// A 4 by 4 box average from the pixel towards +x and +y (not centred).
std::string Vorn_2DFX::GetPS_Blur() {
  return R"glsl(#version 330 core
uniform sampler2D texture0;
uniform vec2   uTexSize;
varying vec2   vOutTexcoords;

out vec4 outColor;
void main()
{
    float dx = 1.0/float(uTexSize.x);
    float dy = 1.0/float(uTexSize.y);
    vec4 texColor = texture2D(texture0, vOutTexcoords.xy);
    texColor += texture2D(texture0,vOutTexcoords.xy+vec2(dx,0.0));
    texColor += texture2D(texture0,vOutTexcoords.xy+vec2(dx*2.0,0.0));
    texColor += texture2D(texture0,vOutTexcoords.xy+vec2(dx*3.0,0.0));

    texColor += texture2D(texture0,vOutTexcoords.xy+vec2(0.0,dy));
    texColor += texture2D(texture0,vOutTexcoords.xy+vec2(dx,dy));
    texColor += texture2D(texture0,vOutTexcoords.xy+vec2(dx*2.0,dy));
    texColor += texture2D(texture0,vOutTexcoords.xy+vec2(dx*3.0,dy));

    texColor += texture2D(texture0,vOutTexcoords.xy+vec2(0.0,dy*2.0));
    texColor += texture2D(texture0,vOutTexcoords.xy+vec2(dx,dy*2.0));
    texColor += texture2D(texture0,vOutTexcoords.xy+vec2(dx*2.0,dy*2.0));
    texColor += texture2D(texture0,vOutTexcoords.xy+vec2(dx*3.0,dy*2.0));

    texColor += texture2D(texture0,vOutTexcoords.xy+vec2(0.0,dy*3.0));
    texColor += texture2D(texture0,vOutTexcoords.xy+vec2(dx,dy*3.0));
    texColor += texture2D(texture0,vOutTexcoords.xy+vec2(dx*2.0,dy*3.0));
    texColor += texture2D(texture0,vOutTexcoords.xy+vec2(dx*3.0,dy*3.0));

    texColor /= 16.0;
    outColor = texColor;
}
)glsl";
}

// Mosaic: coordinates snapped down to a grid of uMSKSize pixels.
std::string Vorn_2DFX::GetPS_MSK() {
  return R"glsl(#version 330 core
uniform sampler2D texture0;
uniform vec2   uTexSize;
uniform vec2   uMSKSize;
varying vec2   vOutTexcoords;
out vec4 outColor;
void main()
{
    vec2  intXY = vec2(vOutTexcoords.x * uTexSize.x , vOutTexcoords.y * uTexSize.y);
    vec2  XYMosaic   = vec2(int(intXY.x/uMSKSize.x) * uMSKSize.x, int(intXY.y/uMSKSize.y) * uMSKSize.y );
    vec2  UVMosaic   = vec2(XYMosaic.x/uTexSize.x , XYMosaic.y/uTexSize.y);
    outColor = texture2D( texture0, UVMosaic );
}
)glsl";
}

// Bloom pass 1: grey luminance above 0.2, lowered by 0.2.
std::string Vorn_2DFX::GetPS_BrightArea() {
  return R"glsl(#version 330 core
uniform sampler2D texture0;
uniform vec2   uTexSize;
varying vec2   vOutTexcoords;
out vec4 outColor;
void main()
{
    vec4 texColor = texture2D(texture0, vOutTexcoords.xy);
    float gray = texColor.x*0.2989+texColor.y*0.5870+texColor.z*0.1140;
    if(gray > 0.2)
    {
        gray = gray - 0.2;
        outColor = vec4(gray,gray,gray,1.0);
    }
    else
    {
        outColor = vec4(0.0,0.0,0.0,1.0);
    }
}
)glsl";
}

// Bloom pass 2: the sum of the scene and its blurred bright areas.
std::string Vorn_2DFX::GetPS_Bloom() {
  return R"glsl(#version 330 core
uniform sampler2D texture0;
uniform sampler2D texture1;
varying vec2   vOutTexcoords;
out vec4 outColor;
void main()
{
    vec4 texColor1 = texture2D(texture0, vOutTexcoords.xy);
    vec4 texColor2 = texture2D(texture1, vOutTexcoords.xy);
    outColor = texColor1 + texColor2;
}
)glsl";
}

// Hard switch between sharp and an 11 by 11 box blur on the depth image in texture1.
std::string Vorn_2DFX::GetPS_DepthOfField() {
  return R"glsl(#version 330 core
uniform sampler2D texture0;
uniform sampler2D texture1;
uniform vec2   uTexSize;
uniform float  fBlurLerpValue;
varying vec2   vOutTexcoords;
out vec4 outColor;
void main()
{
    vec4 texColor1 = texture2D(texture0, vOutTexcoords.xy);
    vec4 texColor1_Blur = texColor1;
    int  tCount = 0;
    float dx = 1.0/float(uTexSize.x);
    float dy = 1.0/float(uTexSize.y);
    for(int i = -5; i <= 5; i++)
    {
        for(int j = -5; j <= 5; j++)
        {
            texColor1_Blur += texture2D(texture0, vec2(vOutTexcoords.x + dx*j, vOutTexcoords.y + dy*i));
            tCount++;
        }
    }
    texColor1_Blur /= tCount ;
    vec4  texColor2 = texture2D(texture1, vOutTexcoords.xy);
    float fDepth = texColor2.r;
    if (fDepth > 0.2)
    {
        fDepth = 0.0;
    }
    else
    {
        fDepth = 1.0;
    }
    outColor = texColor1 * fDepth +  texColor1_Blur * (1.0 - fDepth);
}
)glsl";
}

// A hash of the coordinate in grey.
std::string Vorn_2DFX::GetPS_Noise() {
  return R"glsl(#version 330 core
//XYZ
uniform sampler2D texture0;
//UV
varying vec2    vOutTexcoords;
out vec4        outColor;
//返回一个0~1.0内的随机数
float random(vec2 st)
{
    return fract(sin(dot(st.xy,vec2(12.9898,78.233)))*43758.5453123);
}
void main()
{
    float randValue = random(vOutTexcoords.xy);
    outColor = vec4(randValue,randValue,randValue,1.0);
}
)glsl";
}

}  // namespace vorn
