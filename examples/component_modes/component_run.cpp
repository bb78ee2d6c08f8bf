// SPDX-License-Identifier: MIT
// The phases of a run, each ended by all ranks together. Between them travel: boxes, candidates of joints and their
// numbers; the reduced parts; the coordinates of the modes; forces along the interfaces.
#include "component_run.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iostream>
#include <iterator>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "ZORTavTimer.h"
#include "failure_text.h"
#include "joints/joined_mesh.h"
#include "joints/joint_candidates.h"
#include "joints/joint_map.h"
#include "parallel/part_owners.h"
#include "phases/own_parts.h"
#include "phases/refinement.h"
#include "phases/residuals.h"
#include "reduced/reduced_problem.h"
#include "report/component_report.h"
#include "report/mode_files.h"
#include "report/mode_table.h"
#include "report/number_text.h"
#include "report/output_folder.h"
#include "structure/gmsh_mesh.h"
#include "structure/tapered_membrane.h"
#include "substructure/substructure.h"

namespace component {
namespace {

using modal::at;

class Run {
 public:
  Run(Ranks& ranks, const Options& options)
      : ranks_(ranks),
        options_(options),
        owners_(options.parts, ranks.size()),
        own_(owners_, ranks.rank(), options.mesh_file) {}

  int run() {
    phase("meshing", [this] { mesh(); });
    phase("joints", [this] { join(); });
    phase("elimination", [this] { eliminate(); });
    tell_model();
    phase("part modes",
          [this] { own_.each([this](OwnPart& part) { part.substructure->find_modes(options_.part_modes); }); });
    phase("reduction", [this] { assemble(); });
    phase("joined modes", [this] { solve(); });
    phase("expansion", [this] { expand(); });
    if (options_.refinements > 0) {
      phase("refinement", [this] { refine(); });
    }
    phase("residuals",
          [this] { result_.residual = residuals(ranks_, owners_, own_, reduced_.get(), result_.eigenvalue); });
    if (!options_.out.empty()) {
      phase("writing", [this] { write(); });
    }
    phase("report", [this] { report(); });
    if (missed_) {
      print_failure("modes were missed");
    }
    return missed_ ? EXIT_FAILURE : EXIT_SUCCESS;
  }

 private:
  // Runs this rank's work of a phase, then waits for the others.
  template <class Work>
  void phase(const char* name, const Work& work) {
    modal::PhaseTime time{name, 0.0, 0.0};
    bool well = true;
    try {
      ZORTavTimer timer;
      timer.Start();
      work();
      timer.Stop();
      time = {name, timer.GetElapsed(), timer.GetCPU()};
    } catch (const Stopped&) {
      throw;
    } catch (const std::exception& error) {
      well = false;
      print_failure(ranks_.rank(), failure_text(error, nullptr));
    }
    ranks_.agree(well);
    phases_.push_back(time);
  }

  void mesh() {
    if (ranks_.is_root() && !options_.out.empty()) {
      const modal::OutputFolder probe(options_.out);  // what cannot be written is known before the work, and said once
    }
    std::vector<double> boxes(box_size * at(options_.parts), 0.0);
    own_.each([&](OwnPart& part) {
      part.mesh = options_.mesh_file.empty()
                      ? modal::tapered_membrane_part(options_.mesh_x, options_.mesh_y, options_.parts, part.number)
                      : modal::read_gmsh_mesh(options_.mesh_file[at(part.number)], modal::Support::optional);
      const std::vector<double> box = box_of(part.mesh);
      std::copy(box.begin(), box.end(), boxes.begin() + static_cast<std::ptrdiff_t>(box_size * at(part.number)));
    });
    boxes_ = std::move(boxes);
  }

  void join() {
    ranks_.sum(boxes_);
    own_.each([&](OwnPart& part) { part.candidates = joint_candidates(part.mesh, part.number, boxes_); });
    std::vector<std::vector<Candidate>> candidates;
    to_root(
        ranks_, owners_,
        [&](int p) { return own_.of(p, [](OwnPart& part) { return candidate_message(part.mesh, part.candidates); }); },
        [&](int, const modal::Array<double>& message) { candidates.push_back(candidates_of(message)); });

    std::unique_ptr<JointMap> map;
    if (ranks_.is_root()) {
      map = std::make_unique<JointMap>(candidates);
      candidates.clear();
    }
    refuse_bad_joint(map.get());

    if (map != nullptr) {
      std::vector<std::vector<std::int32_t>> interface;
      interface.reserve(at(options_.parts));
      for (int p = 0; p < options_.parts; ++p) {
        interface.push_back(interface_unknowns(map->of(p)));
      }
      reduced_ = std::make_unique<ReducedProblem>(std::move(interface), 2 * map->nodes());
    }
    from_root(
        ranks_, owners_, [&](int p) { return joint_message(map->of(p)); },
        [&](int p, const modal::Array<double>& message) {
          own_.of(p, [&](OwnPart& part) {
            const std::vector<JointNode> joint = joint_of(message);
            check_sides(part.mesh, part.candidates, joint);
            part.interior = put_interface_last(part.mesh, part.candidates, joint);
            if (part.interior == 0) {
              throw modal::InputError("no unknown lies inside the part: it is too small");
            }
          });
        });
  }

  // The owner of the part concerned says what the root has found.
  void refuse_bad_joint(const JointMap* map) {
    double faulty = map != nullptr ? map->faulty_part() : 0.0;
    ranks_.broadcast({&faulty, 1});
    const int part = static_cast<int>(faulty);
    if (part < 0) {
      return;
    }
    const int owner = owners_.owner(part);
    std::string fault = map != nullptr ? map->fault() : "";
    if (owner != 0 && ranks_.is_root()) {
      ranks_.send(owner, modal::Array<double>(fault.begin(), fault.end()));
    } else if (owner != 0 && owner == ranks_.rank()) {
      for (const double character : ranks_.receive(0)) {
        fault.push_back(static_cast<char>(character));
      }
    }
    if (owner == ranks_.rank()) {
      own_.of(part, [&](OwnPart&) { throw modal::InputError(fault); });
    }
    ranks_.agree(true);
  }

  void eliminate() {
    own_.each([&](OwnPart& part) {
      modal::Structure structure = modal::membrane_structure(title() + ", part " + std::to_string(part.number + 1),
                                                             std::exchange(part.mesh, {}));
      part.substructure = std::make_unique<Substructure>(std::move(structure), part.interior);
    });
  }

  void assemble() {
    to_root(
        ranks_, owners_,
        [&](int p) { return own_.of(p, [](OwnPart& part) { return part.substructure->reduced().message(); }); },
        [&](int p, modal::Array<double> message) {
          const auto unknowns = static_cast<std::int32_t>(reduced_->interface_of(p).size());
          reduced_->add(ReducedPart(unknowns, std::move(message)));
        });
  }

  void solve() {
    if (ranks_.is_root()) {
      if (options_.modes > reduced_->order()) {
        throw modal::InputError("--modes " + std::to_string(options_.modes) + ": the joined parts have only " +
                                std::to_string(reduced_->order()) + " unknowns; more --part-modes give more");
      }
      result_ = reduced_->solve(options_.modes);
    }
  }

  void expand() {
    result_.eigenvalue.resize(at(options_.modes));
    ranks_.broadcast(result_.eigenvalue);
    from_root(
        ranks_, owners_, [&](int p) { return reduced_->share(p, result_); },
        [&](int p, const modal::Array<double>& coordinates) {
          own_.of(p, [&](OwnPart& part) { part.mode = part.substructure->expanded(options_.modes, coordinates); });
        });
  }

  void refine() {
    const std::vector<double> before = result_.eigenvalue;
    Refinement refinement(ranks_, owners_, own_, reduced_.get());
    for (int step = 0; step < options_.refinements; ++step) {
      refinement.step(result_.eigenvalue);
    }
    for (std::size_t i = 0; i < before.size(); ++i) {
      const double was = modal::frequency(before[i]);
      fall_ = std::max(fall_, (was - modal::frequency(result_.eigenvalue[i])) / was);
    }
  }

  void write() {
    modal::OutputFolder folder(options_.out);
    own_.each([&](OwnPart& part) {
      modal::ModalResult own;
      own.eigenvalue = result_.eigenvalue;
      own.mode = part.mode;
      folder.write("modes-part-" + std::to_string(part.number + 1) + ".vtk",
                   [&](std::ostream& out) { modal::write_vtk(out, part.substructure->structure(), own); });
    });
    folder.publish();
  }

  std::string title() const {
    return options_.mesh_file.empty()
               ? modal::tapered_membrane_title(options_.mesh_x, options_.mesh_y, options_.parts)
               : "steel membrane from " + options_.mesh_file.front() +
                     (options_.parts == 1 ? "" : " and " + std::to_string(options_.parts - 1) + " other files");
  }

  void tell_model() {
    std::vector<double> interior{0.0};
    for (const OwnPart& part : own_) {
      interior[0] += part.substructure->interior();
    }
    ranks_.sum(interior);
    if (ranks_.is_root()) {
      print_model(std::cout,
                  {title(), options_.parts, ranks_.size(), options_.threads, interior[0], reduced_->joint_unknowns()});
    }
  }

  void report() {
    // Of all ranks the largest: the times of the phases, then the lowest limit of part modes with its sign turned, the
    // number of part modes, and whether any were missed.
    std::vector<double> largest;
    for (const modal::PhaseTime& time : phases_) {
      largest.insert(largest.end(), {time.elapsed, time.processor});
    }
    RankFigures own{};
    double limit = -std::numeric_limits<double>::infinity();
    double count = 0.0;
    double missed = 0.0;
    for (const OwnPart& part : own_) {
      const FixedInterfaceModes& modes = part.substructure->modes();
      own.parts += 1.0;
      own.unknowns += part.substructure->order();
      limit = std::max(limit, -modes.eigenvalue.back());
      count = std::max(count, static_cast<double>(modes.eigenvalue.size()));
      missed = modes.none_missed ? missed : 1.0;
    }
    largest.insert(largest.end(), {missed, count, limit});
    ranks_.largest(largest);

    own.peak_bytes = modal::ArrayMemory::instance().peak_bytes();
    own.bytes_sent = ranks_.bytes_sent();
    const std::vector<RankFigures> all = gather(own);
    if (!ranks_.is_root()) {
      return;
    }
    for (std::size_t i = 0; i < phases_.size(); ++i) {
      phases_[i].elapsed = largest[2 * i];
      phases_[i].processor = largest[2 * i + 1];
    }
    const double* end = largest.data() + largest.size();
    const auto published = options_.mesh_file.empty() ? modal::tapered_membrane_frequencies() : std::vector<double>();
    print_modes(std::cout, {result_, published, reduced_->order(), static_cast<int>(end[-2]), -end[-1], end[-3] != 0.0,
                            options_.refinements, fall_});
    modal::print_phase_times(std::cout, phases_);
    print_ranks(std::cout, all);
    if (!options_.out.empty()) {
      std::cout << "Wrote modes-part-1.vtk .. modes-part-" << options_.parts << ".vtk to " << options_.out << '\n';
    }
    std::cout << std::flush;
    if (!std::cout) {
      throw modal::InputError("standard output cannot be written");
    }
    missed_ = !modal::no_mode_missed(result_) || end[-3] != 0.0;
  }

  // At the root: those of all ranks.
  std::vector<RankFigures> gather(const RankFigures& own) {
    const double values[] = {own.parts, own.unknowns, own.peak_bytes, own.bytes_sent};
    const modal::Array<double> all = ranks_.gather(values);
    std::vector<RankFigures> figures;
    for (std::size_t i = 0; i < all.size(); i += std::size(values)) {
      figures.push_back({all[i], all[i + 1], all[i + 2], all[i + 3]});
    }
    return figures;
  }

  Ranks& ranks_;
  const Options& options_;
  PartOwners owners_;
  OwnParts own_;
  std::vector<double> boxes_;
  std::unique_ptr<ReducedProblem> reduced_;  // at the root
  modal::ModalResult result_;
  std::vector<modal::PhaseTime> phases_;
  double fall_ = 0.0;    // of a frequency by the refinement, the largest, relative
  bool missed_ = false;  // at the root: modes of the structure or of a part
};

}  // namespace

int run_component_modes(Ranks& ranks, const Options& options) {
  return Run(ranks, options).run();
}

}  // namespace component
