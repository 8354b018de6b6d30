// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGQuaternion.h>
#include <OpenSG/OSGVector.h>

#include <cmath>
#include <ostream>

namespace osg {

/**
 * A four by four matrix that transforms column vectors.
 *
 * Stored by columns, as OpenGL takes it: `matrix[3]` is the fourth column and holds the translation, getValues() points
 * at sixteen numbers in this order. Constructors and setValue() take sixteen numbers row by row, as one writes a
 * matrix. A fresh matrix is the identity. The operations that set one part of a transformation leave the others alone:
 * setTranslate() writes three numbers of the fourth column and nothing else.
 */
template <class ValueTypeT>
class TransformationMatrix {
public:
    using ValueType = ValueTypeT;
    using VectorType = Vector<ValueTypeT, 4>;
    using QuaternionType = QuaternionBase<ValueTypeT>;
    using VectorType3f = Vector<ValueTypeT, 3>;
    using PointType3f = Point<ValueTypeT, 3>;

    static constexpr const TransformationMatrix& identity() noexcept { return s_identity; }

    constexpr TransformationMatrix() noexcept
        : m_columns{VectorType(1, 0, 0, 0), VectorType(0, 1, 0, 0), VectorType(0, 0, 1, 0), VectorType(0, 0, 0, 1)}
    {}

    /// Three axes as the first columns, the fourth as in the identity.
    constexpr TransformationMatrix(const VectorType3f& xAxis, const VectorType3f& yAxis,
                                   const VectorType3f& zAxis) noexcept
        : TransformationMatrix(xAxis, yAxis, zAxis, VectorType3f())
    {}

    /// Three axes and the translation as the columns.
    constexpr TransformationMatrix(const VectorType3f& xAxis, const VectorType3f& yAxis, const VectorType3f& zAxis,
                                   const VectorType3f& translation) noexcept
        : m_columns{VectorType(xAxis), VectorType(yAxis), VectorType(zAxis), VectorType(translation)}
    {
        m_columns[3][3] = ValueType(1);
    }

    /// The sixteen numbers row by row: the first four are the first row.
    constexpr TransformationMatrix(const ValueType v00, const ValueType v10, const ValueType v20, const ValueType v30,
                                   const ValueType v01, const ValueType v11, const ValueType v21, const ValueType v31,
                                   const ValueType v02, const ValueType v12, const ValueType v22, const ValueType v32,
                                   const ValueType v03, const ValueType v13, const ValueType v23,
                                   const ValueType v33) noexcept
        : m_columns{VectorType(v00, v01, v02, v03), VectorType(v10, v11, v12, v13), VectorType(v20, v21, v22, v23),
                    VectorType(v30, v31, v32, v33)}
    {}

    constexpr void setIdentity() noexcept { *this = TransformationMatrix(); }

    constexpr void setValue(const TransformationMatrix& other) noexcept { *this = other; }

    constexpr void setValue(const ValueType v00, const ValueType v10, const ValueType v20, const ValueType v30,
                            const ValueType v01, const ValueType v11, const ValueType v21, const ValueType v31,
                            const ValueType v02, const ValueType v12, const ValueType v22, const ValueType v32,
                            const ValueType v03, const ValueType v13, const ValueType v23, const ValueType v33) noexcept
    {
        *this = TransformationMatrix(v00, v10, v20, v30, v01, v11, v21, v31, v02, v12, v22, v32, v03, v13, v23, v33);
    }

    constexpr void setValue(const VectorType3f& xAxis, const VectorType3f& yAxis, const VectorType3f& zAxis) noexcept
    {
        *this = TransformationMatrix(xAxis, yAxis, zAxis);
    }

    constexpr void setValue(const VectorType3f& xAxis, const VectorType3f& yAxis, const VectorType3f& zAxis,
                            const VectorType3f& translation) noexcept
    {
        *this = TransformationMatrix(xAxis, yAxis, zAxis, translation);
    }

    /**
     * Takes sixteen numbers by columns, the order of getValues().
     *
     * @param values must not be null (not checked)
     * @param transposed whether @p values are in rows instead
     */
    constexpr void setValue(const ValueType* values, const bool transposed = false) noexcept
    {
        for (UInt32 i = 0; i < 4; ++i) {
            for (UInt32 j = 0; j < 4; ++j) {
                m_columns[i][j] = values[transposed ? j * 4 + i : i * 4 + j];
            }
        }
    }

    constexpr VectorType& operator[](const UInt32 column) noexcept { return m_columns[column]; }
    constexpr const VectorType& operator[](const UInt32 column) const noexcept { return m_columns[column]; }

    /// Sixteen numbers by columns, as OpenGL takes them.
    ValueType* getValues() noexcept
    {
        static_assert(sizeof(m_columns) == 16 * sizeof(ValueType));
        return reinterpret_cast<ValueType*>(m_columns);
    }
    const ValueType* getValues() const noexcept { return reinterpret_cast<const ValueType*>(m_columns); }

    constexpr void setScale(const ValueType factor) noexcept { setScale(factor, factor, factor); }
    constexpr void setScale(const ValueType x, const ValueType y, const ValueType z) noexcept
    {
        m_columns[0][0] = x;
        m_columns[1][1] = y;
        m_columns[2][2] = z;
    }
    constexpr void setScale(const VectorType3f& factors) noexcept { setScale(factors[0], factors[1], factors[2]); }

    constexpr void setTranslate(const ValueType x, const ValueType y, const ValueType z) noexcept
    {
        m_columns[3][0] = x;
        m_columns[3][1] = y;
        m_columns[3][2] = z;
    }
    constexpr void setTranslate(const PointType3f& position) noexcept
    {
        setTranslate(position[0], position[1], position[2]);
    }

    /// Writes the nine numbers of the upper left; a scale that was there is gone.
    constexpr void setRotate(const QuaternionType& rotation) noexcept
    {
        const ValueType x = rotation.x();
        const ValueType y = rotation.y();
        const ValueType z = rotation.z();
        const ValueType w = rotation.w();
        m_columns[0] = VectorType(1 - 2 * (y * y + z * z), 2 * (x * y + w * z), 2 * (x * z - w * y), m_columns[0][3]);
        m_columns[1] = VectorType(2 * (x * y - w * z), 1 - 2 * (x * x + z * z), 2 * (y * z + w * x), m_columns[1][3]);
        m_columns[2] = VectorType(2 * (x * z + w * y), 2 * (y * z - w * x), 1 - 2 * (x * x + y * y), m_columns[2][3]);
    }

    constexpr void setTransform(const VectorType3f& translation) noexcept
    {
        setIdentity();
        setTranslate(translation);
    }
    constexpr void setTransform(const QuaternionType& rotation) noexcept
    {
        setIdentity();
        setRotate(rotation);
    }
    constexpr void setTransform(const VectorType3f& translation, const QuaternionType& rotation) noexcept
    {
        setTransform(rotation);
        setTranslate(translation);
    }
    /// Scales first, then turns, then moves.
    constexpr void setTransform(const VectorType3f& translation, const QuaternionType& rotation,
                                const VectorType3f& scaleFactor) noexcept
    {
        setTransform(translation, rotation);
        for (UInt32 i = 0; i < 3; ++i) {
            m_columns[i] *= scaleFactor[i];
        }
    }
    /// Scales along the axes that @p scaleOrientation turns the axes to, then turns, then moves.
    constexpr void setTransform(const VectorType3f& translation, const QuaternionType& rotation,
                                const VectorType3f& scaleFactor, const QuaternionType& scaleOrientation) noexcept
    {
        TransformationMatrix turnedBack;
        turnedBack.setRotate(scaleOrientation.inverse());
        setTransform(translation, rotation * scaleOrientation, scaleFactor);
        mult(turnedBack);
    }
    /// As above with @p center as the fixed point of scaling and turning.
    constexpr void setTransform(const VectorType3f& translation, const QuaternionType& rotation,
                                const VectorType3f& scaleFactor, const QuaternionType& scaleOrientation,
                                const VectorType3f& center) noexcept
    {
        setTransform(translation + center, rotation, scaleFactor, scaleOrientation);
        TransformationMatrix fromCenter;
        fromCenter.setTranslate(-center);
        mult(fromCenter);
    }

    /**
     * Takes the matrix apart into what setTransform() with four arguments puts together again.
     *
     * A mirroring matrix gives three negative scale factors. Where the numbers are not finite the results are of no
     * use.
     */
    void getTransform(VectorType3f& translation, QuaternionType& rotation, VectorType3f& scaleFactor,
                      QuaternionType& scaleOrientation) const noexcept;

    /// This becomes this x @p right: @p right is applied first.
    constexpr void mult(const TransformationMatrix& right) noexcept
    {
        TransformationMatrix result;
        for (UInt32 i = 0; i < 4; ++i) {
            result.m_columns[i] = m_columns[0] * right.m_columns[i][0] + m_columns[1] * right.m_columns[i][1] +
                                  m_columns[2] * right.m_columns[i][2] + m_columns[3] * right.m_columns[i][3];
        }
        *this = result;
    }

    /// This becomes @p left x this: @p left is applied last.
    constexpr void multLeft(const TransformationMatrix& left) noexcept
    {
        TransformationMatrix result(left);
        result.mult(*this);
        *this = result;
    }

    friend constexpr TransformationMatrix operator*(TransformationMatrix left,
                                                    const TransformationMatrix& right) noexcept
    {
        left.mult(right);
        return left;
    }

    /// Transforms a position, the fourth row left aside. Here and below source and result may be the same object.
    constexpr void multMatrixPnt(const PointType3f& source, PointType3f& result) const noexcept
    {
        result = upperRows(source[0], source[1], source[2], ValueType(1));
    }
    constexpr void multMatrixPnt(PointType3f& point) const noexcept { multMatrixPnt(point, point); }

    /// Transforms a position and divides by the fourth component; where that is zero the result is the origin.
    constexpr void multFullMatrixPnt(const PointType3f& source, PointType3f& result) const noexcept
    {
        const ValueType w =
            m_columns[0][3] * source[0] + m_columns[1][3] * source[1] + m_columns[2][3] * source[2] + m_columns[3][3];
        if (!(w < ValueType(0) || w > ValueType(0))) {
            result.setNull();
            return;
        }
        multMatrixPnt(source, result);
        result /= w;
    }
    constexpr void multFullMatrixPnt(PointType3f& point) const noexcept { multFullMatrixPnt(point, point); }

    /// Transforms a direction: no translation.
    constexpr void multMatrixVec(const VectorType3f& source, VectorType3f& result) const noexcept
    {
        result = upperRows(source[0], source[1], source[2], ValueType(0));
    }
    constexpr void multMatrixVec(VectorType3f& vector) const noexcept { multMatrixVec(vector, vector); }
    constexpr void multMatrixVec(const VectorType& source, VectorType& result) const noexcept
    {
        result =
            m_columns[0] * source[0] + m_columns[1] * source[1] + m_columns[2] * source[2] + m_columns[3] * source[3];
    }

    constexpr void mult(const PointType3f& source, PointType3f& result) const noexcept
    {
        multMatrixPnt(source, result);
    }
    constexpr void mult(const VectorType3f& source, VectorType3f& result) const noexcept
    {
        multMatrixVec(source, result);
    }
    constexpr void mult(const VectorType& source, VectorType& result) const noexcept { multMatrixVec(source, result); }
    constexpr void multFull(const PointType3f& source, PointType3f& result) const noexcept
    {
        multFullMatrixPnt(source, result);
    }

    constexpr PointType3f operator*(const PointType3f& point) const noexcept
    {
        PointType3f result;
        multMatrixPnt(point, result);
        return result;
    }
    constexpr VectorType3f operator*(const VectorType3f& vector) const noexcept
    {
        VectorType3f result;
        multMatrixVec(vector, result);
        return result;
    }
    constexpr VectorType operator*(const VectorType& vector) const noexcept
    {
        VectorType result;
        multMatrixVec(vector, result);
        return result;
    }

    /// The determinant of the upper left three by three.
    constexpr ValueType det3() const noexcept
    {
        const VectorType3f x(m_columns[0]);
        return x.dot(VectorType3f(m_columns[1]).cross(VectorType3f(m_columns[2])));
    }

    constexpr ValueType det() const noexcept { return static_cast<ValueType>(Minors(*this).det()); }

    /**
     * Writes the inverse to @p result, which may be this matrix.
     *
     * @return false, and @p result stays as it is, for a matrix without inverse or with numbers that are not finite
     */
    bool inverse(TransformationMatrix& result) const noexcept
    {
        const Minors minors(*this);
        const Real64 determinant = minors.det();
        if (!std::isfinite(determinant) || !(determinant < 0.0 || determinant > 0.0)) {
            return false;
        }
        result = minors.adjugate(1.0 / determinant);
        return true;
    }
    bool invert() noexcept { return inverse(*this); }
    /// Sets this to the inverse of @p matrix; without one this stays as it is and false is returned.
    bool invertFrom(const TransformationMatrix& matrix) noexcept { return matrix.inverse(*this); }

    constexpr bool transposed(TransformationMatrix& result) const noexcept
    {
        TransformationMatrix copy;
        for (UInt32 i = 0; i < 4; ++i) {
            for (UInt32 j = 0; j < 4; ++j) {
                copy.m_columns[j][i] = m_columns[i][j];
            }
        }
        result = copy;
        return true;
    }
    constexpr bool transpose() noexcept { return transposed(*this); }
    constexpr bool transposeFrom(const TransformationMatrix& matrix) noexcept { return matrix.transposed(*this); }

    constexpr void add(const TransformationMatrix& other) noexcept
    {
        for (UInt32 i = 0; i < 4; ++i) {
            m_columns[i] += other.m_columns[i];
        }
    }
    /// Multiplies all sixteen numbers.
    constexpr void scale(const ValueType factor) noexcept
    {
        for (VectorType& column : m_columns) {
            column *= factor;
        }
    }
    constexpr void negate() noexcept { scale(ValueType(-1)); }

    constexpr bool equals(const TransformationMatrix& other, const ValueType tolerance) const noexcept
    {
        for (UInt32 i = 0; i < 4; ++i) {
            if (!m_columns[i].equals(other.m_columns[i], tolerance)) {
                return false;
            }
        }
        return true;
    }
    /// Compares per number with the tolerance Eps.
    constexpr bool operator==(const TransformationMatrix& other) const noexcept
    {
        return equals(other, static_cast<ValueType>(Eps));
    }
    constexpr bool operator!=(const TransformationMatrix& other) const noexcept { return !(*this == other); }

    /// Writes the four rows, one a line.
    friend std::ostream& operator<<(std::ostream& stream, const TransformationMatrix& matrix)
    {
        for (UInt32 row = 0; row < 4; ++row) {
            for (UInt32 i = 0; i < 4; ++i) {
                stream << matrix.m_columns[i][row] << (i < 3 ? ' ' : '\n');
            }
        }
        return stream;
    }

private:
    /// Determinants of the two by two blocks of the upper and of the lower rows, from which the rest follows.
    class Minors {
    public:
        explicit constexpr Minors(const TransformationMatrix& matrix) noexcept
        {
            for (UInt32 row = 0; row < 4; ++row) {
                for (UInt32 i = 0; i < 4; ++i) {
                    // In double: products of four numbers of a scene in millimetres overflow and cancel in float.
                    m_rows[row][i] = static_cast<Real64>(matrix.m_columns[i][row]);
                }
            }
            UInt32 k = 0;
            for (UInt32 i = 0; i < 3; ++i) {
                for (UInt32 j = i + 1; j < 4; ++j, ++k) {
                    m_upper[k] = m_rows[0][i] * m_rows[1][j] - m_rows[0][j] * m_rows[1][i];
                    m_lower[k] = m_rows[2][i] * m_rows[3][j] - m_rows[2][j] * m_rows[3][i];
                }
            }
        }

        constexpr Real64 det() const noexcept
        {
            return m_upper[0] * m_lower[5] - m_upper[1] * m_lower[4] + m_upper[2] * m_lower[3] +
                   m_upper[3] * m_lower[2] - m_upper[4] * m_lower[1] + m_upper[5] * m_lower[0];
        }

        TransformationMatrix adjugate(const Real64 factor) const noexcept
        {
            TransformationMatrix result;
            // Signed cofactors: those of the upper rows come from the lower blocks and the other way round.
            for (UInt32 row = 0; row < 4; ++row) {
                const Real64* other = m_rows[row ^ 1U];
                const Real64* block = row < 2 ? m_lower : m_upper;
                const Real64 sign = (row % 2 == 0 ? factor : -factor);
                const Real64 cofactors[4] = {
                    other[1] * block[5] - other[2] * block[4] + other[3] * block[3],
                    -(other[0] * block[5] - other[2] * block[2] + other[3] * block[1]),
                    other[0] * block[4] - other[1] * block[2] + other[3] * block[0],
                    -(other[0] * block[3] - other[1] * block[1] + other[2] * block[0]),
                };
                for (UInt32 i = 0; i < 4; ++i) {
                    result.m_columns[row][i] = static_cast<ValueType>(sign * cofactors[i]);
                }
            }
            return result;
        }

    private:
        Real64 m_rows[4][4] = {};
        // Column pairs in the order 01, 02, 03, 12, 13, 23.
        Real64 m_upper[6] = {};
        Real64 m_lower[6] = {};
    };

    constexpr VectorType3f upperRows(const ValueType x, const ValueType y, const ValueType z,
                                     const ValueType w) const noexcept
    {
        const auto row = [&](const UInt32 i) {
            return m_columns[0][i] * x + m_columns[1][i] * y + m_columns[2][i] * z + m_columns[3][i] * w;
        };
        return VectorType3f(row(0), row(1), row(2));
    }

    static const TransformationMatrix s_identity;

    VectorType m_columns[4];
};

template <class ValueTypeT>
inline constexpr TransformationMatrix<ValueTypeT> TransformationMatrix<ValueTypeT>::s_identity{};

template <class ValueTypeT>
void TransformationMatrix<ValueTypeT>::getTransform(VectorType3f& translation, QuaternionType& rotation,
                                                    VectorType3f& scaleFactor,
                                                    QuaternionType& scaleOrientation) const noexcept
{
    translation = VectorType3f(m_columns[3]);

    TransformationMatrix linear{VectorType3f(m_columns[0]), VectorType3f(m_columns[1]), VectorType3f(m_columns[2])};
    const bool isMirroring = linear.det3() < ValueType(0);
    if (isMirroring) {
        linear.scale(ValueType(-1));
        linear.m_columns[3][3] = ValueType(1);
    }

    // Polar decomposition: the mean of a matrix and the transposed inverse converges to the rotation in it.
    constexpr int maximumSteps = 32;
    TransformationMatrix turn(linear);
    for (int step = 0; step < maximumSteps; ++step) {
        TransformationMatrix next;
        if (!turn.inverse(next)) {
            break;
        }
        next.transpose();
        next.add(turn);
        next.scale(ValueType(0.5));
        const bool isDone = next.equals(turn, ValueType(1e-7));
        turn = next;
        if (isDone) {
            break;
        }
    }
    rotation.setValue(turn);

    // What is left is symmetric; turning pairs of axes until the rest vanishes leaves the factors in the diagonal.
    TransformationMatrix stretch(turn);
    stretch.transpose();
    stretch.mult(linear);
    TransformationMatrix axes;
    constexpr int sweeps = 12;
    for (int sweep = 0; sweep < sweeps; ++sweep) {
        for (UInt32 p = 0; p < 2; ++p) {
            for (UInt32 q = p + 1; q < 3; ++q) {
                const ValueType mixed = stretch[q][p];
                const ValueType scaleOfPair = std::abs(stretch[p][p]) + std::abs(stretch[q][q]);
                if (!(std::abs(mixed) > scaleOfPair * ValueType(1e-7))) {
                    continue;
                }
                const ValueType angle = std::atan2(2 * mixed, stretch[q][q] - stretch[p][p]) / 2;
                TransformationMatrix pair;
                pair[p][p] = pair[q][q] = std::cos(angle);
                pair[q][p] = std::sin(angle);
                pair[p][q] = -std::sin(angle);
                stretch.mult(pair);
                axes.mult(pair);
                pair.transpose();
                stretch.multLeft(pair);
            }
        }
    }
    scaleOrientation.setValue(axes);
    const ValueType sign = isMirroring ? ValueType(-1) : ValueType(1);
    scaleFactor = VectorType3f(stretch[0][0], stretch[1][1], stretch[2][2]) * sign;
}

template <class ValueTypeT>
void QuaternionBase<ValueTypeT>::setValue(const VectorType& from, const VectorType& to) noexcept
{
    VectorType start(from);
    VectorType end(to);
    start.normalize();
    end.normalize();
    const ValueType cosine = start.dot(end);
    if (cosine < ValueType(-0.999999)) {
        // Opposite directions: any axis that stands on them will do.
        const VectorType other = std::abs(start[0]) < ValueType(0.5) ? VectorType(1, 0, 0) : VectorType(0, 1, 0);
        setValueAsAxisRad(start.cross(other), ValueType(3.14159265358979323846));
        return;
    }
    const VectorType axis = start.cross(end);
    m_values.setValues(axis[0], axis[1], axis[2], 1 + cosine);
    normalize();
}

template <class ValueTypeT>
void QuaternionBase<ValueTypeT>::setValue(const MatrixType& matrix) noexcept
{
    const ValueType trace = matrix[0][0] + matrix[1][1] + matrix[2][2];
    if (trace > ValueType(0)) {
        m_values.setValues(matrix[1][2] - matrix[2][1], matrix[2][0] - matrix[0][2], matrix[0][1] - matrix[1][0],
                           1 + trace);
    } else {
        // The largest diagonal element gives the component that is safe to divide by.
        UInt32 i = matrix[1][1] > matrix[0][0] ? 1 : 0;
        if (matrix[2][2] > matrix[i][i]) {
            i = 2;
        }
        const UInt32 j = (i + 1) % 3;
        const UInt32 k = (i + 2) % 3;
        m_values[i] = 1 + matrix[i][i] - matrix[j][j] - matrix[k][k];
        m_values[j] = matrix[i][j] + matrix[j][i];
        m_values[k] = matrix[i][k] + matrix[k][i];
        m_values[3] = matrix[j][k] - matrix[k][j];
    }
    normalize();
}

template <class ValueTypeT>
void QuaternionBase<ValueTypeT>::getValue(MatrixType& matrix) const noexcept
{
    matrix.setTransform(*this);
}

using Matrix = TransformationMatrix<Real32>;
using Matrix4f = Matrix;
using Matrix4d = TransformationMatrix<Real64>;

} // namespace osg
