// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Model/LoadControl.h"

#include <assimp/postprocess.h>

#include <array>

struct aiScene;

namespace Assimp {
class Importer;
}

namespace quon::viewer {

struct ModelData;

/** What had to be left out of a file. */
struct AssimpLosses {
    unsigned meshes = 0;         ///< without any face that can be shown
    unsigned meshesInFile = 0;   ///< as many as there were
    unsigned faces = 0;          ///< of meshes that stay
    unsigned meshReferences = 0; ///< of nodes, to meshes that are not in the file
};

/**
 * Takes out of a scene what would break the steps that follow or could not be drawn: meshes without a face that can be
 * shown, faces with corners that do not exist or have no place, references to meshes that are not there.
 *
 * @param scene has a root node; any array and any other pointer in it may be null, any index and any number wrong
 * @throws LoadCancelled
 */
AssimpLosses cleanAssimpScene(aiScene& scene, const LoadControl& control);

/** What Assimp then does to the scene, one step by one: between them there is a chance to stop. */
constexpr std::array<unsigned, 5> AssimpSteps{aiProcess_RemoveComponent, aiProcess_Triangulate, aiProcess_SortByPType,
                                              aiProcess_GenSmoothNormals, aiProcess_JoinIdenticalVertices};

/** Sets what the steps depend on; call it before the first of them. */
void configureAssimpSteps(Assimp::Importer& importer);

/**
 * Copies a scene that was cleaned and went through the steps into plain arrays: nodes, meshes that a node uses, and
 * materials.
 *
 * @param data has none of these yet
 * @throws LoadCancelled
 */
void convertAssimpScene(const aiScene& scene, const LoadControl& control, ModelData& data);

} // namespace quon::viewer
