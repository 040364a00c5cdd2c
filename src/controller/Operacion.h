// What a record dialog is opened for.
#pragma once

enum class TOperacion { opAlta, opBaja, opModificacion, opConsulta };

using enum TOperacion;
