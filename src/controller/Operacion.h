// The purpose for which a record dialog is opened.
#pragma once

/// Addition, deletion, change, view.
enum class TOperacion { opAlta, opBaja, opModificacion, opConsulta };

using enum TOperacion;
