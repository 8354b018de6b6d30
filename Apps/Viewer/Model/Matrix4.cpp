// SPDX-License-Identifier: MIT
#include "Viewer/Model/Matrix4.h"

#include <cmath>
#include <utility>

namespace quon::viewer {

Matrix4::Matrix4()
    : m_values{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}
{}

Matrix4::Matrix4(const osg::Matrix& matrix)
    : m_values{}
{
    for (int column = 0; column < 4; ++column) {
        for (int row = 0; row < 4; ++row) {
            (*this)(row, column) =
                static_cast<double>(matrix[static_cast<osg::UInt32>(column)][static_cast<osg::UInt32>(row)]);
        }
    }
}

Matrix4 Matrix4::operator*(const Matrix4& right) const
{
    Matrix4 product;
    for (int column = 0; column < 4; ++column) {
        for (int row = 0; row < 4; ++row) {
            double sum = 0;
            for (int i = 0; i < 4; ++i) {
                sum += (*this)(row, i) * right(i, column);
            }
            product(row, column) = sum;
        }
    }
    return product;
}

Vector4 Matrix4::operator*(const Vector4& vector) const
{
    Vector4 product{};
    for (int row = 0; row < 4; ++row) {
        for (int i = 0; i < 4; ++i) {
            product[static_cast<std::size_t>(row)] += (*this)(row, i) * vector[static_cast<std::size_t>(i)];
        }
    }
    return product;
}

Vector4 Matrix4::transform(const osg::Pnt3f& point) const
{
    return *this *
           Vector4{static_cast<double>(point[0]), static_cast<double>(point[1]), static_cast<double>(point[2]), 1.0};
}

Matrix4 Matrix4::inverted(bool* invertible) const
{
    // Elimination with the largest pivot: camera matrices mix very large and very small elements.
    Matrix4 work = *this;
    Matrix4 result;
    for (int column = 0; column < 4; ++column) {
        int pivot = column;
        for (int row = column + 1; row < 4; ++row) {
            if (std::abs(work(row, column)) > std::abs(work(pivot, column))) {
                pivot = row;
            }
        }
        const double value = work(pivot, column);
        if (!(std::abs(value) > 0) || !std::isfinite(value)) {
            if (invertible != nullptr) {
                *invertible = false;
            }
            return Matrix4();
        }
        for (int i = 0; i < 4; ++i) {
            std::swap(work(pivot, i), work(column, i));
            std::swap(result(pivot, i), result(column, i));
            work(column, i) /= value;
            result(column, i) /= value;
        }
        for (int row = 0; row < 4; ++row) {
            const double factor = row == column ? 0 : work(row, column);
            for (int i = 0; i < 4; ++i) {
                work(row, i) -= factor * work(column, i);
                result(row, i) -= factor * result(column, i);
            }
        }
    }
    if (invertible != nullptr) {
        *invertible = true;
    }
    return result;
}

bool Matrix4::isFinite() const
{
    for (const double value : m_values) {
        if (!std::isfinite(value)) {
            return false;
        }
    }
    return true;
}

osg::Matrix Matrix4::toMatrix() const
{
    osg::Matrix matrix;
    for (int column = 0; column < 4; ++column) {
        for (int row = 0; row < 4; ++row) {
            matrix[static_cast<osg::UInt32>(column)][static_cast<osg::UInt32>(row)] =
                static_cast<osg::Real32>((*this)(row, column));
        }
    }
    return matrix;
}

} // namespace quon::viewer
