#pragma once

namespace ostrelle {

class ColorService;
class RequestRouter;

/// "color.pick": answered with the colour picked when the loupe has closed. Who asked may have gone by then: the colour
/// is recorded all the same.
void addColorPickRequest(RequestRouter &router, ColorService &colors);

} // namespace ostrelle
