// Vectors of three floats or doubles, in the precision of their elements throughout.
#ifndef VELMORN64_GEOMETRY_VECTOR3_H
#define VELMORN64_GEOMETRY_VECTOR3_H

namespace velmorn {

template <typename T>
struct Vector3 {
  T x, y, z;

  Vector3 operator-() const { return {-x, -y, -z}; }
  Vector3 operator+(const Vector3& other) const { return {x + other.x, y + other.y, z + other.z}; }
  Vector3 operator-(const Vector3& other) const { return {x - other.x, y - other.y, z - other.z}; }
  Vector3 operator*(T factor) const { return {x * factor, y * factor, z * factor}; }
  Vector3 operator/(T divisor) const { return {x / divisor, y / divisor, z / divisor}; }
};

using Vector3f = Vector3<float>;
using Vector3d = Vector3<double>;

template <typename T>
T dot(const Vector3<T>& a, const Vector3<T>& b) {
  return a.x * b.x + a.y * b.y + a.z * b.z;
}

template <typename T>
Vector3<T> cross(const Vector3<T>& a, const Vector3<T>& b) {
  return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

inline Vector3d widened(const Vector3f& v) {
  return {static_cast<double>(v.x), static_cast<double>(v.y), static_cast<double>(v.z)};
}

inline Vector3f narrowed(const Vector3d& v) {
  return {static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z)};
}

} // namespace velmorn

#endif // VELMORN64_GEOMETRY_VECTOR3_H
