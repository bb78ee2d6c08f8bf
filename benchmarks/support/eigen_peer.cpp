// SPDX-License-Identifier: MIT
#include "support/eigen_peer.h"

#include <Eigen/Dense>
#include <Eigen/SparseCore>

namespace zorbench::eigen {
namespace {

using Matrix = Eigen::Map<Eigen::MatrixXd>;
using ConstMatrix = Eigen::Map<const Eigen::MatrixXd>;
using Vector = Eigen::Map<Eigen::VectorXd>;
using ConstVector = Eigen::Map<const Eigen::VectorXd>;

}  // namespace

void set_threads(int threads) {
  Eigen::setNbThreads(threads);
}

void axpy(std::int32_t n, double alpha, const double* x, double* y) {
  Vector(y, n) += alpha * ConstVector(x, n);
}

double norm1(std::int32_t n, const double* x) {
  return ConstVector(x, n).lpNorm<1>();
}

double norm2(std::int32_t n, const double* x) {
  return ConstVector(x, n).blueNorm();
}

double greatest(std::int32_t n, const double* x) {
  return ConstVector(x, n).lpNorm<Eigen::Infinity>();
}

void scale(std::int32_t n, double alpha, double* x) {
  Vector(x, n) *= alpha;
}

void copy(std::int32_t n, const double* x, double* y) {
  Vector(y, n) = ConstVector(x, n);
}

void exchange(std::int32_t n, double* x, double* y) {
  Vector(x, n).swap(Vector(y, n));
}

void multiply(bool transposed, std::int32_t n, double alpha, const double* a, const double* x, double beta, double* y) {
  Vector out(y, n);
  out *= beta;
  if (transposed) {
    out.noalias() += alpha * ConstMatrix(a, n, n).transpose() * ConstVector(x, n);
  } else {
    out.noalias() += alpha * ConstMatrix(a, n, n) * ConstVector(x, n);
  }
}

void multiply(bool transpose_a, bool transpose_b, std::int32_t m, std::int32_t n, std::int32_t k, double alpha,
              const double* a, const double* b, double* c) {
  Matrix out(c, m, n);
  const ConstMatrix left(a, transpose_a ? k : m, transpose_a ? m : k);
  const ConstMatrix right(b, transpose_b ? n : k, transpose_b ? k : n);
  if (transpose_a && transpose_b) {
    out.noalias() = alpha * left.transpose() * right.transpose();
  } else if (transpose_a) {
    out.noalias() = alpha * left.transpose() * right;
  } else if (transpose_b) {
    out.noalias() = alpha * left * right.transpose();
  } else {
    out.noalias() = alpha * left * right;
  }
}

void cholesky(std::int32_t n, double* a) {
  Matrix matrix(a, n, n);
  const Eigen::LLT<Eigen::Ref<Eigen::MatrixXd>> factor(matrix);
}

void eigenvectors(std::int32_t n, const double* a, double* d, double* v) {
  const Eigen::SelfAdjointEigenSolver<Eigen::MatrixXd> solver(ConstMatrix(a, n, n));
  Vector(d, n) = solver.eigenvalues();
  Matrix(v, n, n) = solver.eigenvectors();
}

void invert(std::int32_t n, const double* a, double* inverse) {
  Matrix(inverse, n, n) = ConstMatrix(a, n, n).partialPivLu().inverse();
}

void multiply_symmetric(std::int32_t n, std::int32_t nvec, const std::int32_t* rowptr, const std::int32_t* column,
                        const double* values, const double* x, double* y) {
  const Eigen::Map<const Eigen::SparseMatrix<double>> upper(n, n, rowptr[n], rowptr, column, values);
  Matrix(y, n, nvec).noalias() = upper.selfadjointView<Eigen::Upper>() * ConstMatrix(x, n, nvec);
}

}  // namespace zorbench::eigen
