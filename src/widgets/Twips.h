#pragma once

// Layout lengths in the logic are twips (1440 to the inch); windows convert at the widget edge.
// At 96 dots per inch 15 twips make one pixel.
class Twips {
public:
    static int toPixels(int twips);
    static int fromPixels(int pixels);
    static double dotsPerInch();
};
