// Deferred point lights and ambient occlusion pixel texts of Vorn_2DFX.
#include "shader/fx_2d.h"

namespace vorn {

// Sums up to 64 point lights over the position buffer.
std::string Vorn_2DFX::GetPS_DeferLight() {
  return R"glsl(#version 330 core
//XYZ
uniform sampler2D texture0;
//Normal
uniform sampler2D texture1;
//Diffse
uniform sampler2D texture2;
//Original
uniform sampler2D texture3;
//主摄像机观察矩阵
uniform mat4    uViewMatrix;
//主摄像机投影矩阵
uniform mat4    uProjMatrix;
//灯光数量
uniform int     uPointLightCount = 0;
//灯光位置及范围
uniform vec4    uPointLightXYZRangeArray[64];
//灯光颜色
uniform vec3    uPointLightColorArray[64];
//纹理大小
varying vec2    vOutTexcoords;
//输出的结果
out vec4        outColor;
//函数
void main()
{
    // 1. 根据当前的纹理坐标从Gbuffer中获取信息
    //位置图
    vec3  modelXYZ = texture2D(texture0, vOutTexcoords.xy).xyz;
    //法线图
    vec3  normal = texture2D(texture1, vOutTexcoords.xy).xyz;
    //光照图
    vec3  diffuse =  texture2D(texture2, vOutTexcoords.xy).xyz;
    //原始颜色
    vec3  original =  texture2D(texture3, vOutTexcoords.xy).xyz;
    vec3  LightColor = vec3(0.0,0.0,0.0);
    for(int i = 0; i < uPointLightCount ; i++)
    {
        vec3    tempPos = uPointLightXYZRangeArray[i].xyz - modelXYZ;
        float   fLerp   = 1.0 - clamp(length(tempPos) / uPointLightXYZRangeArray[i].w,0.0,1.0);
        LightColor += uPointLightColorArray[i] * fLerp ;
    }
    outColor = vec4(original * diffuse * LightColor,1.0);
}
)glsl";
}

// Occlusion term in grey from the position and normal buffers and a tiled noise image.
std::string Vorn_2DFX::GetPS_SSAO() {
  return R"glsl(            #version 330 core
            //XYZ
            uniform sampler2D texture0;
            //Normal
            uniform sampler2D texture1;
            //随机纹理
            uniform sampler2D texture2;
            //原始纹理
            uniform sampler2D texture3;
            //主摄像机观察矩阵
            uniform mat4    uViewMatrix;
            //主摄像机投影矩阵
            uniform mat4    uProjMatrix;
            //半球内采样数量
            uniform int     uSSAOKernelCount = 64;
            //半球内采样半径
            uniform float   uSSAOKernelRadius = 1.0;
            //半球内采样随机向量
            uniform vec3    uSSAOKernelSample[64];
            //偏移判断误差值
            uniform float   uCheckDepthBias = 0.2;
            //纹理大小
            varying vec2    vOutTexcoords;
            //输出的结果
            out vec4        outColor;
            //偏移
            const vec2 randomScale = vec2(800.0f/10.0f,600.0f/10.0f);
            //函数
            void main()
            {
                // 1. 根据当前的纹理坐标从Gbuffer中获取位置,法线,随机噪声向量
                //世界坐标系下的XYZ
                vec3  modelXYZ = texture2D(texture0, vOutTexcoords.xy).xyz;
                //观察矩阵下的XYZ
                vec3  viewModelXYZ = (uViewMatrix * vec4(modelXYZ,1.0)).xyz;
                //法线
                vec3  normal = texture2D(texture1, vOutTexcoords.xy).xyz;
                //随机法线
                vec3  randomVec = texture2D(texture2, vOutTexcoords.xy*randomScale).xyz;
                if(dot(randomVec,normal) < 0)
                {
                    randomVec = -randomVec;
                }
                //原始屏幕纹理
                vec3  screenColor =  texture2D(texture3, vOutTexcoords.xy).xyz;

                vec3  tangent = normalize(randomVec - normal * dot(randomVec, normal));
                vec3  bitangent = cross(normal, tangent);
                mat3  TBN = mat3(tangent, bitangent, normal);
                float occlusion = 0.0;
                for(int i = 0; i < uSSAOKernelCount; ++i)
                {
                    vec3 samplePos = TBN * uSSAOKernelSample[i];
                    samplePos = modelXYZ + samplePos * uSSAOKernelRadius;
                    vec3 viewSamplePos = (uViewMatrix * vec4(samplePos,1.0)).xyz;
                    vec4 offset = vec4(viewSamplePos, 1.0);
                    offset = uProjMatrix * offset;
                    offset.xyz /= offset.w;
                    offset.xyz = offset.xyz * 0.5 + 0.5;
                    vec4  offsetXYZColor = texture2D(texture0, offset.xy);
                    float sampleDepth = offsetXYZColor.z;
                    float rangeCheck = smoothstep(0.0, 1.0, uSSAOKernelRadius / abs(samplePos.z - sampleDepth));
                    occlusion += (sampleDepth < (samplePos.z + uCheckDepthBias) ? 0.0 : 1.0)*rangeCheck;
                }
                occlusion = 1.0 - (occlusion / uSSAOKernelCount);
                //outColor = vec4(screenColor * occlusion,1.0);
                outColor = vec4(occlusion,occlusion,occlusion,1.0);
}
)glsl";
}

}  // namespace vorn
