#include "demo/addon_files.h"

#include "demo/archive_files.h"

#include <cstdint>

namespace korvadex::demo {

namespace {

// Bytes that depend on the name alone, with the runs and repetitions that real files have.
std::string Filler(const std::string& name, std::size_t size) {
    std::uint32_t state = 2166136261u;
    for (const char letter : name)
        state = (state ^ static_cast<unsigned char>(letter)) * 16777619u;
    std::string bytes;
    while (bytes.size() < size) {
        state = state * 1664525u + 1013904223u;
        bytes.append(1 + (state >> 28), static_cast<char>(state >> 16));
    }
    bytes.resize(size);
    return bytes;
}

std::string Riff(const std::string& kind, const std::string& name, std::size_t size) {
    std::string bytes = "RIFF";
    for (int shift = 0; shift < 32; shift += 8)
        bytes += static_cast<char>((size + 4) >> shift & 0xFF);
    return bytes + kind + Filler(name, size);
}

} // namespace

std::string Text(std::string_view lines) {
    std::string text;
    for (const char letter : lines) {
        if (letter == '\n')
            text += '\r';
        text += letter;
    }
    return text;
}

std::string AircraftCfg(const std::vector<Configuration>& configurations, const std::string& maker,
                        const std::string& type) {
    std::string lines;
    for (std::size_t i = 0; i < configurations.size(); ++i) {
        const Configuration& entry = configurations[i];
        lines += "[fltsim." + std::to_string(i) + "]\n";
        lines += "title=" + entry.title + "\nsim=" + type + "\nmodel=\npanel=\nsound=\ntexture=" + entry.texture;
        lines += "\nkb_checklists=\nkb_reference=\natc_id=KX" + std::to_string(310 + i) + "\natc_airline=\n";
        lines += "atc_flight_number=\nui_manufacturer=" + maker + "\nui_type=" + type +
                 "\nui_variation=" + entry.variation + "\ndescription=Made for the example.\n\n";
    }
    lines += "[General]\natc_type=" + maker + "\natc_model=" + type +
             "\nperformance=Cruise speed 120 kt\\nRange 480 nm\n\n[WEIGHT_AND_BALANCE]\nmax_gross_weight = 2450\n"
             "empty_weight = 1500\nreference_datum_position = 6.96, 0, 0\n\n[GeneralEngineData]\n"
             "engine_type = 0 // piston\nEngine.0 = 3.6, 0, 0\n\n[contact_points]\n"
             "point.0=1, -0.56, 0, -3.8, 1600, 0, 0.5, 22, 0.25, 2.5, 0.7\n";
    return Text(lines);
}

std::string PanelCfg(const std::string& bitmap, const std::vector<std::string>& gauges) {
    std::string lines =
        "// Panel configuration\n[Window Titles]\nWindow00=Main Panel\n\n[VIEW]\nVIEW_FORWARD_DIR=2.0, 0.0, 0.0\n\n"
        "[Window00]\nfile=" +
        bitmap + "\nsize_mm=640\nwindow_size_ratio=1.000\nposition=7\nvisible=1\n";
    for (std::size_t i = 0; i < gauges.size(); ++i) {
        const std::string number = std::to_string(i);
        lines += "gauge" + std::string(number.size() < 2 ? "0" : "") + number + "=" + gauges[i] + ",  " +
                 std::to_string(20 + 124 * (i % 5)) + "," + std::to_string(24 + 120 * (i / 5)) + ",96,96\n";
    }
    lines += "\n[Color]\nDay=255,255,255\nNight=223,255,255\nLuminous=201,64,64\n";
    return Text(lines);
}

std::string AliasCfg(const std::string& alias) {
    return Text("[fltsim]\nalias=" + alias + "\n");
}

std::string ModelCfg(const std::string& model) {
    return Text("[models]\nnormal=" + model + "\n");
}

std::string SoundCfg(const std::string& wave) {
    return Text(
        "[SOUND_ENGINE]\nnumber_of_engines=1\neng1_combustion=COMBUSTION.1.00\n\n[COMBUSTION.1.00]\nfilename=" + wave +
        "\nflags=0\nviewpoint=1\nrparams=0.0,0.5,1.0,1.6\nvparams=0.0,60,1.0,100\nlink=COMBUSTION.1.01\n");
}

std::string Checklist(const std::string& name) {
    return Text(name +
                "\n\nBEFORE START\n  Seats and belts ... SET\n  Fuel selector ..... BOTH\n  Brakes ............ SET\n\n"
                "START\n  Mixture ........... RICH\n  Master switch ..... ON\n  Ignition .......... START\n\nTAKE-OFF\n"
                "  Flaps ............. 10\n  Full power\n  Rotate at ......... 55 kt\n");
}

std::string FlightModel(const std::string& name) {
    return Filler(name, 9216);
}

std::string Model3D(const std::string& name) {
    return Riff("MDL8", name, 65536);
}

std::string GaugeLibrary(const std::string& name) {
    return "MZ" + Filler(name, 24574);
}

std::string GaugeCabinet(const std::string& name, const std::string& bitmap) {
    const std::string face = name + "_Face.bmp";
    return Cabinet({{"Airspeed.xml",
                     Text("<Gauge Name=\"Airspeed\" Version=\"1.0\">\n  <Image Name=\"" + face + "\"/>\n</Gauge>\n")},
                    {"Compass.xml",
                     Text("<Gauge Name=\"Compass\" Version=\"1.0\">\n  <Image Name=\"" + face + "\"/>\n</Gauge>\n")},
                    {face, bitmap}});
}

std::string Effect(const std::string& texture) {
    return Text("[Library Effect]\nLifetime=5\nVersion=1.00\nRadius=-1\nPriority=0\n\n[Properties]\nIntensity=1\n\n"
                "[Emitter.0]\nLifetime=0.00, 0.00\nDelay=0.00, 0.00\nBounce=0.00\n\n[Particle.0]\nLifetime=0.80, 1.20\n"
                "Type=19\nTexture=" +
                texture + "\n");
}

std::string StandInProgram() {
    // A whole program in the format of DOS: prints its text and ends.
    std::string bytes("MZ\x90\x00\x01\x00\x00\x00\x04\x00\x00\x00\xFF\xFF\x00\x00"
                      "\xB8\x00\x00\x00\x00\x00\x00\x00\x40\x00\x00\x00",
                      28);
    bytes.resize(64, '\0');
    bytes.append("\x0E\x1F\xBA\x0E\x00\xB4\x09\xCD\x21\xB8\x01\x4C\xCD\x21", 14);
    return bytes + "This stands in for the simulator in the example of Korvadex.\r\n$";
}

} // namespace korvadex::demo
