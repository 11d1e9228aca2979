#include "host/SvgPainter.h"

#include <cstdint>
#include <string_view>

#include "host/NumberText.h"
#include "host/XmlText.h"

namespace poweranalysis {

namespace {

std::string Number(double value) {
  constexpr int kDecimals = 2;
  return FormatDecimals(value, kDecimals);
}

std::string Attribute(std::string_view name, std::string_view value) {
  std::string text(1, ' ');
  text.append(name).append("=\"").append(value).append("\"");
  return text;
}

std::string Attribute(std::string_view name, double value) {
  return Attribute(name, Number(value));
}

std::string Hex(const Rgb& colour) {
  static constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text(1, '#');
  for (const std::uint8_t part : {colour.red, colour.green, colour.blue}) {
    text += kDigits[part / 16];
    text += kDigits[part % 16];
  }
  return text;
}

struct Painter {
  const ChartTheme& theme;
  std::string svg;

  std::string Paint(std::string_view attribute, Role role) const {
    return Attribute(attribute, Hex(theme[role]));
  }

  void operator()(const LineItem& line) {
    svg += "<line" + Attribute("x1", line.from.x) + Attribute("y1", line.from.y) +
           Attribute("x2", line.to.x) + Attribute("y2", line.to.y) + Paint("stroke", line.role) +
           Attribute("stroke-width", line.width) + "/>\n";
  }

  void operator()(const RectItem& rect) {
    svg += "<rect" + Attribute("x", rect.corner.x) + Attribute("y", rect.corner.y) +
           Attribute("width", rect.width) + Attribute("height", rect.height) +
           Paint("fill", rect.role) + "/>\n";
  }

  void operator()(const PolylineItem& line) {
    svg += "<polyline fill=\"none\" stroke-linejoin=\"round\" stroke-linecap=\"round\"" +
           Paint("stroke", line.role) + Attribute("stroke-width", line.width) + " points=\"";
    for (std::size_t i = 0; i < line.points.size(); ++i) {
      svg += i == 0 ? "" : " ";
      svg += Number(line.points[i].x) + "," + Number(line.points[i].y);
    }
    svg += "\"/>\n";
  }

  void operator()(const DotItem& dot) {
    svg += "<circle" + Attribute("cx", dot.centre.x) + Attribute("cy", dot.centre.y) +
           Attribute("r", dot.radius) + Paint("fill", dot.role) + "/>\n";
  }

  void operator()(const TextItem& text) {
    static constexpr std::string_view kAnchors[] = {"start", "middle", "end"};
    svg += "<text xml:space=\"preserve\"" + Attribute("x", text.at.x) + Attribute("y", text.at.y) +
           " text-anchor=\"";
    svg += kAnchors[static_cast<int>(text.anchor)];
    svg += '"';
    svg += Attribute("font-size", text.size);
    svg += text.bold ? " font-weight=\"bold\"" : "";
    svg += Paint("fill", text.role);
    if (text.rotation != 0) {
      svg += " transform=\"rotate(" + Number(-text.rotation) + " " + Number(text.at.x) + " " +
             Number(text.at.y) + ")\"";
    }
    svg += '>';
    svg += XmlEscaped(text.text) + "</text>\n";
  }
};

}  // namespace

std::string PaintSvg(const DisplayList& list, const ChartTheme& theme) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + PaintSvgElement(list, theme);
}

std::string PaintSvgElement(const DisplayList& list, const ChartTheme& theme) {
  Painter painter{theme, {}};
  painter.svg = "<svg xmlns=\"http://www.w3.org/2000/svg\" role=\"img\"" +
                Attribute("width", list.width) + Attribute("height", list.height) +
                " viewBox=\"0 0 " + Number(list.width) + " " + Number(list.height) +
                "\" font-family=\"'DejaVu Sans', Verdana, Arial, sans-serif\">\n<title>" +
                XmlEscaped(list.title) + "</title>\n<desc>" + XmlEscaped(list.description) +
                "</desc>\n";
  for (const DisplayItem& item : list.items) {
    std::visit(painter, item);
  }
  painter.svg += "</svg>\n";
  return std::move(painter.svg);
}

}  // namespace poweranalysis
