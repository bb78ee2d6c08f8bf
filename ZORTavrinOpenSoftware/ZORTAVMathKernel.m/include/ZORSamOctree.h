/* SPDX-License-Identifier: MIT */
/* Spatial search: an octree over points that the caller owns, and the k nearest of them to a query point.
 *
 * The tree does not know how the points are stored. A derived class tells the coordinates of each by its index, from 0:
 *
 *   class PointTree : public ZORSamNeighborTree {                // data: x, y, z of point 0, of point 1, ...
 *    public:
 *     int32_t GetOctinfo(ZORSamOctinfo& rec) override {
 *       const double* point = static_cast<const double*>(data_) + 3 * static_cast<size_t>(rec.index);
 *       rec.x = point[0];
 *       rec.y = point[1];
 *       rec.z = point[2];
 *       return ZORSamStatusOk;
 *     }
 *   };
 *
 *   PointTree tree;
 *   int32_t status = tree.Build(points, n, 16, nullptr, 1e-9, 20);  // 16 points a leaf, at most 20 levels
 *   uint32_t found = 0, index[8];
 *   double square[8];                                               // squared distances, ascending
 *   if (status >= 0) status = tree.GetNeighbors(0.5, 0.5, 0.5, 8, found, index, square, 0.0, n, 1);
 *
 * Statuses: 0 is success, a negative value a failure; nothing throws and no message is written.
 *
 * Numbers that are not finite do no harm. A coordinate that is NaN does not widen the root box and sorts into the lower
 * half of every octant; its point is a neighbour at distance NaN, which is not in order among the others. An infinite
 * coordinate makes the root box infinite on its axis; the octants are then told apart by the other axes only, and no
 * node is left out on account of that axis. Points that coincide are never told apart: where they outnumber a leaf they
 * sink together to the deepest level and share a leaf there, whose index array grows. No tree is deeper than 512
 * levels, however small minDiag; recursion takes at most 256 KiB of stack.
 *
 * Threads: a tree is used by one thread at a time; different trees are independent. Nothing runs in parallel.
 *
 * Reproducibility: every sum and comparison has a fixed order; results are the same bits on every machine. The number
 * of levels follows from a quotient of logarithms of the C library and may differ by one between platforms where
 * the squared ratio of root diagonal to minDiag is a power of 4 to the last bit.
 *
 * Method: D. Meagher, Geometric modeling using octree encoding, Computer Graphics and Image Processing 19 (1982);
 * S. Arya, D. M. Mount, N. S. Netanyahu, R. Silverman and A. Y. Wu, An optimal algorithm for approximate nearest
 * neighbor searching in fixed dimensions, Journal of the ACM 45 (1998), for the relative error. */
#ifndef ZOR_SAM_OCTREE_H
#define ZOR_SAM_OCTREE_H

#include <stddef.h>
#include <stdint.h>

#include <array>

#include "ZORExport.h"

/** Success. */
inline constexpr int32_t ZORSamStatusOk = 0;
/** 0x8000FFFF: a bad call or a broken invariant. */
inline constexpr int32_t ZORSamStatusUnexpected = -0x7FFF0001;
/** 0x8007000E: an allocation failed. */
inline constexpr int32_t ZORSamStatusOutOfMemory = -0x7FF8FFF2;

/** One entity on its way through the tree; inside the octree also a centre or the half sizes of an octant. */
class ZOR_EXPORT ZORSamOctinfo {
 public:
  /** All zero. */
  ZORSamOctinfo();
  ZORSamOctinfo(const ZORSamOctinfo& other);
  ZORSamOctinfo(uint32_t entity, double at_x, double at_y, double at_z);
  ZORSamOctinfo& operator=(const ZORSamOctinfo& other);
  /** Zeroes the fields. */
  virtual ~ZORSamOctinfo();

  double x;
  double y;
  double z;
  uint32_t index;
};

class ZORSamOctree;

/**
 * A node of the octree: a box, and either up to eight children or the indexes of its entities.
 *
 *   sizes at level L := sizes of the tree / 2^L        box := centre ± sizes / 2
 *
 * Child c of an octant holds the entities with c = (x > cx) + 2·(y > cy) + 4·(z > cz): a coordinate equal to the
 * centre, or NaN, belongs to the lower half. A child without entities does not exist.
 *
 * Trees make and own their octants; a class derived from this one may carry more, see ZORSamOctree::CreateOctant.
 */
class ZOR_EXPORT ZORSamOctant {
 public:
  ZORSamOctant(const ZORSamOctant&) = delete;
  ZORSamOctant& operator=(const ZORSamOctant&) = delete;

  /** The corners of the box. [out] all. A box is not cubic; neighbouring boxes may differ by rounding. */
  void GetBoundingBox(double& xmin, double& ymin, double& zmin, double& xmax, double& ymax, double& zmax) const;
  /** The lengths of the box, 0 without a tree. [out] all. */
  void GetSizes(double& x, double& y, double& z) const;
  /** Length of the index array: 0 or maxNbEntities of the tree times a power of 2. */
  uint32_t GetCapacity() const { return capacity_; }
  /** Eight children, null where there is none; null itself in a leaf. */
  ZORSamOctant* const* GetChilds() const { return childs_; }
  /** The entities of a leaf, ascending, GetNbEntities() of them and zeros up to GetCapacity(); null in an inner octant.
   */
  const uint32_t* GetIndexes() const { return indexes_; }
  /** 0 for the root. */
  uint32_t GetLevel() const { return level_; }
  /** Entities in this octant and below. */
  uint32_t GetNbEntities() const { return nbEntities_; }
  const ZORSamOctree* GetTree() const { return tree_; }
  bool IsLeaf() const { return childs_ == nullptr; }

 protected:
  ZORSamOctant();
  /** Destroys the children, each through its virtual destructor. */
  virtual ~ZORSamOctant();

  /** The child that the position belongs to, 0..7. */
  uint32_t GetChildIndex(double x, double y, double z) const {
    return (x > centreX_ ? 1U : 0U) + (y > centreY_ ? 2U : 0U) + (z > centreZ_ ? 4U : 0U);
  }

  double centreX_;
  double centreY_;
  double centreZ_;
  ZORSamOctree* tree_;
  ZORSamOctant** childs_;
  uint32_t* indexes_;
  uint32_t nbEntities_;
  uint32_t capacity_;
  uint32_t level_;

 private:
  friend class ZORSamOctree;
  friend class ZORSamOctantFilling;

  void Init(ZORSamOctree& tree, const ZORSamOctinfo& rec);
  int32_t Add(ZORSamOctinfo& rec);
  int32_t AddToChild(ZORSamOctinfo& rec);
  int32_t Split();
  int32_t AddChild(const ZORSamOctinfo& half);
  int32_t AddIndex(uint32_t index);
  ZORSamOctinfo HalfSizes(uint32_t child) const;
  void Reset();
};

/**
 * An octree over points in space. The root box is the bounding box of the entities that take part.
 *
 * Memory beside the caller's data, on 64-bit Linux: 80 bytes an octant, 80 more for an inner one, and for a leaf
 * 4·maxNbEntities bytes or a doubling of it; at capacity 16 together 30 to 60 bytes a point. Build needs 64 bytes a
 * point beside that until it returns; where those are refused it inserts the entities one by one, which is slower and
 * gives the same tree.
 */
class ZOR_EXPORT ZORSamOctree {
 public:
  /** An empty tree. */
  ZORSamOctree();
  ZORSamOctree(const ZORSamOctree&) = delete;
  ZORSamOctree& operator=(const ZORSamOctree&) = delete;
  /** As Reset. */
  virtual ~ZORSamOctree();

  /**
   * A new empty octant of the node class of this tree. A derived tree that overrides it allocates its own class,
   * derived from ZORSamOctant, with new; it is released with delete through the virtual destructor.
   *
   * @param out [in, out] null on entry; the octant. On a failure, what it then points at is destroyed.
   * @return 0; 0x8000FFFF when out is not null on entry; 0x8007000E when the allocation fails.
   */
  virtual int32_t CreateOctant(ZORSamOctant*& out) const;

  /**
   * Tells where an entity lies. It must tell the same at every call; it is called twice for each entity during Build
   * (more often only where memory is short) and once for each entity that a query examines.
   *
   * @param rec [in, out] rec.index, from 0: the entity; rec.x, rec.y, rec.z: to be set.
   * @return 0 on success; a negative status stops the operation, which returns it unchanged.
   */
  virtual int32_t GetOctinfo(ZORSamOctinfo& rec) = 0;

  /**
   * Builds the tree.
   *
   * An octant splits when it holds more than maxNbEntities and its level + 1 is below the limit of levels, which
   * follows from minDiag and the root diagonal D:
   *
   *   r := D² / minDiag²
   *   r ≤ 1:  limit := 0                                           minDiag := D, a length
   *   else    limit := min(maxNbLevels, ⌊ln r / ln 4⌋)             minDiag := D² / 4^limit, a squared length
   *
   * The two units of minDiag are deliberate; GetMinDiag returns whichever was stored. With a limit below 2 the root
   * never splits. r infinite, because minDiag² is too small or D² too large for a double, counts as 4^512; r NaN
   * as 4^0.
   *
   * @param data          [in] what GetOctinfo reads, not null; it and the flags stay the caller's and must live as long
   *                      as the tree uses them. The tree itself never reads data.
   * @param nbEntities    [in] number of entities in data; 0 gives an empty tree.
   * @param maxNbEntities [in] capacity of a leaf, at least 1; the index array of every leaf starts at this length.
   * @param flags         [in] a byte for each entity, 0 where it does not take part; null: all take part.
   * @param minDiag       [in] smallest diagonal wanted, a length above 0.
   * @param maxNbLevels   [in] limit of levels; 0 and 1 both give a single leaf.
   * @return 0, also when no entity takes part (then there is no root, and the sizes are 0); 0x8000FFFF with nothing
   *         changed when a tree stands already (Reset it first), data is null, maxNbEntities is 0 or minDiag ≤ 0;
   *         0x8007000E when memory is short, else the failure of GetOctinfo or CreateOctant, and then the tree is
   * empty.
   *
   * Source of the split of a whole set at a time, eight ways: the most-significant-digit radix sort.
   */
  int32_t Build(const void* data, uint32_t nbEntities, uint32_t maxNbEntities, const unsigned char* flags,
                double minDiag, uint32_t maxNbLevels);
  /** Empties the tree: destroys the octants and forgets the caller's data. */
  void Reset();

  /** The root box, all 0 without a root. [out] all. */
  void GetBoundingBox(double& xmin, double& ymin, double& zmin, double& xmax, double& ymax, double& zmax) const;
  /** The centre of the root box, 0 without a root. [out] all. */
  void GetCenter(double& x, double& y, double& z) const;
  /** The lengths of the root box. [out] all. */
  void GetSizes(double& x, double& y, double& z) const;
  const unsigned char* GetFlags() const { return flags_; }
  uint32_t GetMaxNbEntities() const { return maxNbEntities_; }
  /** The limit of levels as Build lowered it. */
  uint32_t GetMaxNbLevels() const { return maxNbLevels_; }
  /** A length or a squared length, see Build. */
  double GetMinDiag() const { return minDiag_; }
  /** Levels that exist: 1 where the root is a leaf, 0 without a root. */
  uint32_t GetNbLevels() const { return nbLevels_; }
  /** The entities that take part. */
  uint32_t GetNbValidEntities() const;

 protected:
  /** 8^L, modulo 2^32: octants that level L can have. 0 from L = 11 on. */
  uint32_t GetLevelMaxNbOctants(uint32_t level) const;
  /** (8^L − 1) / 7, in double precision and modulo 2^32 (0 from 2^64 on): octants that L levels can have. */
  uint32_t GetTreeMaxNbOctants(uint32_t level) const;

  double sizeX_;
  double sizeY_;
  double sizeZ_;
  double minDiag_;
  ZORSamOctant* root_;
  const void* data_;
  const unsigned char* flags_;
  uint32_t nbEntities_;
  uint32_t maxNbEntities_;
  uint32_t nbLevels_;
  uint32_t maxNbLevels_;

 private:
  friend class ZORSamOctant;
  friend class ZORSamOctantFilling;

  bool TakesPart(uint32_t entity) const { return flags_ == nullptr || flags_[entity] != 0; }
  int32_t InitRootAndSizes(uint32_t& count);
  void InitLimits();
  int32_t AddAll(uint32_t count);
  int32_t AddOneByOne();
};

class ZORSamNeighborTree;

/** The octant of a ZORSamNeighborTree. */
class ZOR_EXPORT ZORSamNeighborNode : public ZORSamOctant {
 protected:
  ZORSamNeighborNode();
  ~ZORSamNeighborNode() override;

 private:
  friend class ZORSamNeighborTree;

  int32_t GetNeighbors(ZORSamOctinfo& rec) const;
  int32_t CollectNeighbors(ZORSamOctinfo& rec) const;
  std::array<double, 8> ChildDistances(const ZORSamNeighborTree& tree) const;
};

/** An octree that finds the entities nearest to a point. */
class ZOR_EXPORT ZORSamNeighborTree : public ZORSamOctree {
 public:
  /** An empty tree, the query fields zero. */
  ZORSamNeighborTree();
  ~ZORSamNeighborTree() override;

  /** As ZORSamOctree::CreateOctant, of ZORSamNeighborNode; what overrides it makes a class derived from that. */
  int32_t CreateOctant(ZORSamOctant*& out) const override;

  /**
   * The entities nearest to (x, y, z), by increasing squared distance dx² + dy² + dz².
   *
   * The leaf on the query's side is examined first, then the siblings on the way up, from child 0 to 7, a whole leaf at
   * a time in the order of its indexes. While fewer than targetNb are held, every octant is entered. From then on an
   * octant is left out when its distance reaches the largest held distance / (1 + maxError)², where
   *
   *   distance of a box := tx² + ty² + tz²,  t of an axis: how far the query lies outside the box on this axis,
   *                                          or the t of the axis before (0 at first) where it lies inside
   *
   * Inside a slab the distance of the axis before deliberately counts again. The test therefore rejects boxes that the
   * exact distance would keep: even with maxError 0 and maxProbe unlimited some neighbours are missed. Measured at
   * capacity 16 with 1e5 and 1e6 points and random queries (share of the k nearest that was found):
   *
   *     k = 1, 8, 32       uniform in a cube: 0.984, 0.985, 0.983       on a sphere: 0.993, 0.991, 0.990
   *
   * With these arguments no entity nearer than d/√3 is ever missed, d being the largest distance returned. All are
   * found, in order, when targetNb is at least the number of entities that take part.
   *
   * An entity at the same distance as one that is held goes behind it. The place is found by bisection, which stops at
   * the first equal distance that it meets: of three or more equal ones, the later may come between the earlier.
   *
   * @param x, y, z     [in] the query point. NaN or infinite: every distance is NaN or infinite, some entities are
   *                    returned.
   * @param targetNb    [in] neighbours wanted, lowered to the number of entities that take part.
   * @param nbFound     [out] neighbours found; 0 on a failure, unchanged when an argument is bad.
   * @param indexes     [out] array of at least targetNb (as lowered): the entities, the nearest first; 0 from nbFound
   * on.
   * @param squareDists [out] array of the same length, apart from the other: their squared distances; 0 from nbFound
   *                    on. Both arrays are the caller's, are read during the call only, and stay untouched when there
   * is nothing to search.
   * @param maxError    [in] relative error, at least 0: octants that could only shorten a distance by less than this
   *                    share are left out. NaN is accepted: once targetNb are held, no further octant is entered.
   * @param maxProbe    [in] most entities to examine, lowered to the number that take part. 0 finds nothing.
   * @param allowSelf   [in] 0: entities at distance exactly 0 are left out, whichever they are.
   * @return 0, also for an empty tree; 0x8000FFFF when an array is null or maxError < 0 (nothing is written then); a
   *         failure of GetOctinfo, unchanged: the arrays are zero then.
   */
  int32_t GetNeighbors(double x, double y, double z, uint32_t targetNb, uint32_t& nbFound, uint32_t* const indexes,
                       double* const squareDists, double maxError, uint32_t maxProbe, unsigned char allowSelf);
  /** Clears the last query and keeps the octree; ZORSamOctree::Reset empties that. */
  void Reset();

  /** [out] all: the point of the last query. */
  void GetQueryPoint(double& x, double& y, double& z) const;
  /** (1 + maxError)² of the last query. */
  double GetMaxError() const { return maxError_; }
  const uint32_t* GetIndexes() const { return indexes_; }
  const double* GetSquareDists() const { return squareDists_; }
  uint32_t GetNbNeighbors() const { return nbNeighbors_; }
  uint32_t GetTargetNb() const { return targetNb_; }
  /** Entities that the last query examined. */
  uint32_t GetProbe() const { return probe_; }
  uint32_t GetMaxProbe() const { return maxProbe_; }
  unsigned char GetAllowSelf() const { return allowSelf_; }

 private:
  friend class ZORSamNeighborNode;

  uint32_t InsertNeighbor(double sqDist, uint32_t index);
  uint32_t FindPosition(double sqDist) const;
  uint32_t IncreaseProbe() { return ++probe_; }
  double GetMaxSquareDist() const {
    return nbNeighbors_ == 0 || squareDists_ == nullptr ? 0.0 : squareDists_[nbNeighbors_ - 1];
  }
  void ClearResults();

  double queryX_;
  double queryY_;
  double queryZ_;
  double maxError_;
  double* squareDists_;
  uint32_t* indexes_;
  uint32_t nbNeighbors_;
  uint32_t targetNb_;
  uint32_t probe_;
  uint32_t maxProbe_;
  unsigned char allowSelf_;
};

#endif
