// SPDX-License-Identifier: MIT
// Small multiples on one scale. An element side is drawn as the quadratic Bézier curve through its mid-side node,
// which is the exact shape of a side of this element: control point 2·m − (a + b)/2.
#include "report/mode_svg.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <string>
#include <vector>

#include "report/mesh_outline.h"
#include "report/mode_files.h"
#include "report/number_text.h"

namespace modal {
namespace {

using Point = std::array<double, 2>;

// Page, in pixels.
constexpr double margin = 36;
constexpr double header_height = 104;
constexpr double small_panel_width = 400;
constexpr double single_panel_width = 820;
constexpr double panel_gap = 20;
constexpr double panel_padding = 18;
constexpr double caption_height = 46;
constexpr double legend_width = 220;
constexpr std::size_t most_columns = 3;

constexpr double largest_displacement = 0.1;        // as drawn, of the structure's longer measure
constexpr std::size_t most_elements_drawn = 60000;  // in all panels; beyond, the file would be unwieldy
constexpr std::size_t shades = 16;

// Light to dark at even steps of lightness, one family of hues: larger reads as darker, also in grey.
constexpr std::array<std::array<double, 3>, 5> colour_scale{
    {{237, 243, 248}, {178, 210, 226}, {106, 168, 200}, {42, 116, 165}, {15, 61, 107}}};

std::string pixels(double value) {
  return fixed_text(value, 1);
}
std::string point_text(const Point& p) {
  return pixels(p[0]) + " " + pixels(p[1]);
}

// A letter of the path language with one or two points.
std::string command(char letter, const Point& p) {
  return std::string(1, letter).append(point_text(p));
}
std::string command(char letter, const Point& p, const Point& q) {
  return command(letter, p).append(" ").append(point_text(q));
}

std::string shade_colour(std::size_t shade) {
  const double at = static_cast<double>(shade * (colour_scale.size() - 1)) / (shades - 1);
  const std::size_t i = std::min(static_cast<std::size_t>(at), colour_scale.size() - 2);
  std::string text = "rgb(";
  for (std::size_t c = 0; c < 3; ++c) {
    const double mix =
        colour_scale[i][c] + (at - static_cast<double>(i)) * (colour_scale[i + 1][c] - colour_scale[i][c]);
    text += std::to_string(static_cast<int>(std::lround(mix))) + (c < 2 ? "," : ")");
  }
  return text;
}

std::string escaped(const std::string& text) {
  std::string safe;
  for (const char c : text) {
    safe += c == '&' ? "&amp;" : c == '<' ? "&lt;" : c == '>' ? "&gt;" : std::string(1, c);
  }
  return safe;
}

struct Box {
  Point low{1e300, 1e300};
  Point high{-1e300, -1e300};
  void include(const Point& p) {
    for (std::size_t d = 0; d < 2; ++d) {
      low[d] = std::min(low[d], p[d]);
      high[d] = std::max(high[d], p[d]);
    }
  }
  double extent(std::size_t d) const { return high[d] - low[d]; }
};

// Nodes as they stand in mode k, and how far each has moved, 0 to 1.
struct Deformed {
  Array<Point> node;
  std::vector<double> moved;
};

class Picture {
 public:
  Picture(std::ostream& out, const Structure& structure, const ModalResult& result)
      : out_(out), structure_(structure), mesh_(structure.mesh), result_(result), outline_(mesh_outline(mesh_)) {
    Box rest;
    for (const Point& p : mesh_.node) {
      rest.include(p);
    }
    magnification_ = largest_displacement * std::max(rest.extent(0), rest.extent(1));
    box_ = rest;
    for (std::size_t k = 0; k < modes(); ++k) {
      for (const Point& p : deformed(k).node) {
        box_.include(p);
      }
    }
    panel_width_ = modes() == 1 ? single_panel_width : small_panel_width;
    scale_ = (panel_width_ - 2 * panel_padding) / box_.extent(0);
    panel_height_ = caption_height + scale_ * box_.extent(1) + panel_padding;
    columns_ = std::min(most_columns, modes());
    rows_ = (modes() + columns_ - 1) / columns_;
  }

  void draw() {
    const double columns = static_cast<double>(columns_);
    const double rows = static_cast<double>(rows_);
    const double width = 2 * margin + columns * panel_width_ + (columns - 1) * panel_gap;
    const double height = margin + header_height + rows * panel_height_ + (rows - 1) * panel_gap;
    out_ << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << pixels(width) << "\" height=\"" << pixels(height)
         << "\" viewBox=\"0 0 " << pixels(width) << ' ' << pixels(height) << "\" "
         << "font-family=\"Helvetica, Arial, 'Liberation Sans', 'DejaVu Sans', sans-serif\" fill=\"#1c2733\">\n"
         << "<title>" << escaped(structure_.title) << "</title>\n"
         << "<rect width=\"100%\" height=\"100%\" fill=\"#ffffff\"/>\n";
    draw_header(width);
    for (std::size_t k = 0; k < modes(); ++k) {
      const double x = margin + static_cast<double>(k % columns_) * (panel_width_ + panel_gap);
      const std::size_t row = k / columns_;
      const double y = header_height + static_cast<double>(row) * (panel_height_ + panel_gap);
      out_ << "<g transform=\"translate(" << pixels(x) << ' ' << pixels(y) << ")\">\n";
      draw_panel(k);
      out_ << "</g>\n";
    }
    out_ << "</svg>\n";
  }

 private:
  std::size_t modes() const { return result_.eigenvalue.size(); }
  bool elements_drawn() const { return modes() * mesh_.element.size() <= most_elements_drawn; }

  Deformed deformed(std::size_t k) const {
    Deformed shape{mesh_.node, std::vector<double>(mesh_.node.size())};
    const Array<Point> unit = unit_displacement(structure_, result_, k);
    for (std::size_t i = 0; i < unit.size(); ++i) {
      shape.node[i][0] += magnification_ * unit[i][0];
      shape.node[i][1] += magnification_ * unit[i][1];
      shape.moved[i] = std::hypot(unit[i][0], unit[i][1]);
    }
    return shape;
  }

  Point in_panel(const Point& p) const {
    return {panel_padding + scale_ * (p[0] - box_.low[0]), caption_height + scale_ * (box_.high[1] - p[1])};
  }

  // The curve from a to b through the mid-side node m, without its start.
  std::string side_text(const Point& a, const Point& m, const Point& b) const {
    const Point control{2 * m[0] - (a[0] + b[0]) / 2, 2 * m[1] - (a[1] + b[1]) / 2};
    return command('Q', in_panel(control), in_panel(b));
  }

  std::string outline_text(const Array<Point>& node) const {
    std::string path;
    for (const std::vector<Side>& loop : outline_) {
      path += command('M', in_panel(node[static_cast<std::size_t>(loop.front()[0])]));
      for (const Side& side : loop) {
        path += side_text(node[static_cast<std::size_t>(side[0])], node[static_cast<std::size_t>(side[1])],
                          node[static_cast<std::size_t>(side[2])]);
      }
      path += "Z";
    }
    return path;
  }

  // The title's last part is a detail and goes to the second line.
  void draw_header(double width) {
    const std::string& title = structure_.title;
    const std::size_t comma = title.rfind(", ");
    const std::string detail = comma == std::string::npos ? "" : title.substr(comma + 2) + ", ";
    out_ << "<text x=\"" << pixels(margin) << "\" y=\"46\" font-size=\"22\" font-weight=\"bold\">"
         << escaped(title.substr(0, comma)) << "</text>\n"
         << "<text x=\"" << pixels(margin) << "\" y=\"74\" font-size=\"14\" fill=\"#5b6875\">" << escaped(detail)
         << structure_.stiffness.order << " unknowns. Dashed: at rest.</text>\n";
    if (!elements_drawn()) {
      return;
    }
    const double left = width - margin - legend_width;
    const double step = legend_width / shades;
    for (std::size_t s = 0; s < shades; ++s) {
      out_ << "<rect x=\"" << pixels(left + static_cast<double>(s) * step) << "\" y=\"56\" width=\""
           << pixels(step + 0.5) << "\" height=\"12\" fill=\"" << shade_colour(s) << "\"/>\n";
    }
    out_ << "<g font-size=\"12\" fill=\"#5b6875\"><text x=\"" << pixels(left)
         << "\" y=\"86\">no displacement</text><text x=\"" << pixels(left + legend_width)
         << "\" y=\"86\" text-anchor=\"end\">the mode's largest</text></g>\n";
  }

  void draw_panel(std::size_t k) {
    const Deformed shape = deformed(k);
    out_ << "<rect width=\"" << pixels(panel_width_) << "\" height=\"" << pixels(panel_height_)
         << "\" rx=\"6\" fill=\"#f8f9fb\" stroke=\"#dfe4ea\"/>\n"
         << "<text x=\"" << pixels(panel_padding) << "\" y=\"30\" font-size=\"15\" font-weight=\"bold\">Mode " << k + 1
         << "</text>\n<text x=\"" << pixels(panel_width_ - panel_padding)
         << "\" y=\"30\" font-size=\"15\" text-anchor=\"end\">" << frequency_text(frequency(result_.eigenvalue[k]))
         << " Hz</text>\n";
    if (elements_drawn()) {
      draw_elements(shape);
    } else {
      out_ << "<path d=\"" << outline_text(shape.node) << "\" fill=\"" << shade_colour(shades / 3) << "\"/>\n";
    }
    out_ << "<path d=\"" << outline_text(shape.node)
         << "\" fill=\"none\" stroke=\"#0d2740\" stroke-width=\"1.2\" stroke-linejoin=\"round\"/>\n"
         << "<path d=\"" << outline_text(mesh_.node)
         << "\" fill=\"none\" stroke=\"#7a4a12\" stroke-width=\"1\" stroke-dasharray=\"5 3\" opacity=\"0.75\"/>\n";
    draw_clamps();
  }

  // One path a shade.
  void draw_elements(const Deformed& shape) {
    std::array<std::string, shades> path;
    for (const auto& element : mesh_.element) {
      std::array<Point, 8> node{};
      double moved = 0;
      for (std::size_t i = 0; i < 8; ++i) {
        node[i] = shape.node[static_cast<std::size_t>(element[i])];
        moved += shape.moved[static_cast<std::size_t>(element[i])] / 8;
      }
      std::string& d = path[std::min(static_cast<std::size_t>(moved * shades), shades - 1)];
      d += command('M', in_panel(node[0]));
      for (std::size_t i = 0; i < 4; ++i) {
        d += side_text(node[i], node[i + 4], node[(i + 1) % 4]);
      }
      d += "Z";
    }
    out_ << "<g stroke=\"#0d2740\" stroke-opacity=\"0.45\" stroke-width=\"0.5\">\n";
    for (std::size_t s = 0; s < shades; ++s) {
      if (!path[s].empty()) {
        out_ << "<path fill=\"" << shade_colour(s) << "\" d=\"" << path[s] << "\"/>\n";
      }
    }
    out_ << "</g>\n";
  }

  bool fixed(std::int32_t node) const {
    const auto& equation = mesh_.equation[static_cast<std::size_t>(node)];
    return equation[0] < 0 && equation[1] < 0;
  }

  // The sign for a clamped edge: a bold line with slanted strokes behind it.
  void draw_clamps() {
    constexpr double stroke_length = 9;
    constexpr double stroke_spacing = 8;
    std::string line;
    std::string strokes;
    double since_stroke = stroke_spacing / 2;
    for (const std::vector<Side>& loop : outline_) {
      for (const Side& side : loop) {
        if (!fixed(side[0]) || !fixed(side[1]) || !fixed(side[2])) {
          continue;
        }
        const Point a = in_panel(mesh_.node[static_cast<std::size_t>(side[0])]);
        const Point b = in_panel(mesh_.node[static_cast<std::size_t>(side[2])]);
        line += command('M', a) + command('L', b);
        const double length = std::hypot(b[0] - a[0], b[1] - a[1]);
        const Point along{(b[0] - a[0]) / length, (b[1] - a[1]) / length};
        // Down on the page the second axis is turned over: the outside, right of the side, is (-along[1], along[0]).
        const Point back{(-along[1] - along[0]) * std::numbers::sqrt2 / 2 * stroke_length,
                         (along[0] - along[1]) * std::numbers::sqrt2 / 2 * stroke_length};
        const double first = stroke_spacing - since_stroke;
        const int strokes_here = first < length ? 1 + static_cast<int>((length - first) / stroke_spacing) : 0;
        for (int i = 0; i < strokes_here; ++i) {
          const double at = first + i * stroke_spacing;
          const Point start{a[0] + at * along[0], a[1] + at * along[1]};
          strokes += command('M', start) + command('l', back);
        }
        since_stroke = std::fmod(since_stroke + length, stroke_spacing);
      }
    }
    out_ << "<path d=\"" << line << "\" stroke=\"#1c2733\" stroke-width=\"2.5\" stroke-linecap=\"square\"/>\n"
         << "<path d=\"" << strokes << "\" stroke=\"#1c2733\" stroke-width=\"0.9\"/>\n";
  }

  std::ostream& out_;
  const Structure& structure_;
  const Mesh& mesh_;
  const ModalResult& result_;
  std::vector<std::vector<Side>> outline_;
  double magnification_ = 1;
  Box box_;
  double scale_ = 1;
  double panel_width_ = small_panel_width;
  double panel_height_ = 0;
  std::size_t columns_ = 1;
  std::size_t rows_ = 1;
};

}  // namespace

void write_svg(std::ostream& out, const Structure& structure, const ModalResult& result) {
  Picture(out, structure, result).draw();
}

}  // namespace modal
