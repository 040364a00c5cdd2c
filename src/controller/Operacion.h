// What a record dialog is opened for.
#pragma once

/// Addition, deletion, change, view.
enum class TOperacion { opAlta, opBaja, opModificacion, opConsulta };

using enum TOperacion;
