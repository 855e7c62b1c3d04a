#include "Twips.h"

#include <QGuiApplication>
#include <QScreen>
#include <cmath>

double Twips::dotsPerInch() {
    const QScreen *screen = QGuiApplication::primaryScreen();
    return screen ? screen->logicalDotsPerInch() : 96.0;
}

int Twips::toPixels(int twips) {
    return int(std::lround(twips * dotsPerInch() / 1440.0));
}

int Twips::fromPixels(int pixels) {
    return int(std::lround(pixels * 1440.0 / dotsPerInch()));
}
