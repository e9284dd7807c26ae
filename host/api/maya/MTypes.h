#pragma once
// Plain types that the other API headers share.

#define MAYA_API_VERSION 201217

using MInt64 = long long;
using MUint64 = unsigned long long;

using short2 = short[2];
using short3 = short[3];
using int2 = int[2];
using int3 = int[3];
using long2 = int[2];
using long3 = int[3];
using float2 = float[2];
using float3 = float[3];
using double2 = double[2];
using double3 = double[3];
using double4 = double[4];
